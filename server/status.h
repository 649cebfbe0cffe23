// How a running server is, for whoever asks over the local socket "status" in its folder.
#pragma once

#include <asio/io_context.hpp>
#include <asio/local/stream_protocol.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/liveness.h"
#include "base/non_copyable.h"

namespace kelvaron::server {

struct Status {
  std::chrono::sys_seconds since{};
  std::size_t clients = 0;
  long linesPerSecond = 0;              // from clients, in the last minute
  long bytesPerSecond = 0;              // to clients, in the last minute
  std::uint64_t refusals = 0;           // since the start
  std::size_t memory = 0;               // bytes
  std::size_t waiting = 0;              // bytes of it that wait for clients
  std::vector<std::string> problems{};  // sentences; none is healthy

  std::string text() const;
  /// One line of JSON, for a monitor.
  std::string json() const;
};

/// Answers who asks with two lines, the text and the JSON, and takes notes of what commands change.
/// The socket lets the owner of the folder in alone.
class StatusSocket : NonCopyable {
 public:
  /// Throws `std::system_error` where there can be no such socket.
  StatusSocket(asio::io_context& io, const std::filesystem::path& folder,
               std::function<Status()> status);
  void close();
  /// One line for the log, in UTF-8.
  std::function<void(std::string_view)> onNote;

 private:
  void accept();

  asio::local::stream_protocol::acceptor acceptor_;
  asio::steady_timer pause_;
  std::function<Status()> status_;
  Liveness alive_;
};

struct StatusAnswer {
  std::string text;
  std::string json;
  bool healthy;
};

/// What the server that runs on the folder answers; throws `StoreError` when none does within two
/// seconds.
StatusAnswer askStatus(const std::filesystem::path& folder);
/// One line for the log of the server that runs on the folder, if one does.
void tellServer(const std::filesystem::path& folder, const std::string& note);

}  // namespace kelvaron::server
