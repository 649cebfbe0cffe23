// A thread for what would hold up the room: password hashes, or the disk.
#pragma once

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "base/non_copyable.h"

namespace kelvaron::server {

class Worker : NonCopyable {
 public:
  explicit Worker(asio::io_context& io) : io_(io) {}
  /// Waits for the jobs that were given, so that no ban is lost; their ends are not told.
  ~Worker() {
    alive_.reset();
    pool_.join();
  }

  /// Runs `job()` on the worker's one thread, after the jobs before it, then
  /// `done(std::optional<Result>, std::string error)` on the loop. A job that throws has no result
  /// but an error text.
  template <class Job, class Done>
  void run(Job job, Done done) {
    asio::post(pool_, [this, alive = std::weak_ptr(alive_), job = std::move(job),
                       done = std::move(done)]() mutable {
      std::optional<std::invoke_result_t<Job>> result;
      std::string error;
      try {
        result = job();
      } catch (const std::exception& exception) {
        error = exception.what();
      }
      asio::post(io_, [alive, result = std::move(result), error = std::move(error),
                       done = std::move(done)]() mutable {
        if (alive.expired()) return;
        done(std::move(result), std::move(error));
      });
    });
  }

 private:
  asio::io_context& io_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
  asio::thread_pool pool_{1};
};

}  // namespace kelvaron::server
