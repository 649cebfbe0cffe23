// A thread for what would hold up the room: password hashes, or the disk.
#pragma once

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <exception>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "base/liveness.h"
#include "base/non_copyable.h"

namespace kelvaron::server {

class Worker : NonCopyable {
 public:
  explicit Worker(asio::io_context& io) : io_(io) {}
  /// Waits for the jobs that were given, so that no ban is lost; their ends are not told.
  ~Worker() { pool_.join(); }

  /// Runs `job()` on the worker's one thread, after the jobs before it, then on the loop
  /// `done(error)`, or `done(std::optional<Result>, error)` for a job with a result. A job that
  /// throws has no result but an error text; else that is empty.
  template <class Job, class Done>
  void run(Job job, Done done) {
    asio::post(pool_, [this, job = std::move(job), told = alive_.guard(std::move(done))]() mutable {
      using Result = std::invoke_result_t<Job>;
      std::string error;
      if constexpr (std::is_void_v<Result>) {
        attempt(error, job);
        asio::post(io_, [told = std::move(told), error = std::move(error)] { told(error); });
      } else {
        std::optional<Result> result;
        attempt(error, [&] { result = job(); });
        asio::post(io_, [told = std::move(told), result = std::move(result),
                         error = std::move(error)]() mutable { told(std::move(result), error); });
      }
    });
  }

 private:
  template <class Step>
  static void attempt(std::string& error, Step&& step) {
    try {
      step();
    } catch (const std::exception& exception) {
      error = exception.what();
    }
  }

  asio::io_context& io_;
  asio::thread_pool pool_{1};
  Liveness alive_;
};

}  // namespace kelvaron::server
