// A Kelvaron chat server that runs on a loop of the caller's: a program's, a test's or a
// benchmark's.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/liveness.h"
#include "base/non_copyable.h"
#include "server/log.h"
#include "server/settings.h"

namespace kelvaron::server {

class FolderClaim;
class Lobby;
class StatusSocket;

/// Where every client looks for a server.
inline constexpr std::uint16_t kDefaultPort = 3069;

struct Options {
  std::string address = "0.0.0.0";     // numeric; "::" takes IPv4 clients too
  std::uint16_t port = kDefaultPort;   // 0: any free one
  std::filesystem::path folder{};      // made, with its files, when it isn't there
  std::optional<Settings> settings{};  // in place of the folder's file
  Log log{};                           // none: nothing is logged
};

/// Everything happens on the thread that runs the loop, but for the store's and the hashes'
/// workers. All functions are to be called there, or while the loop does not run.
class Server : NonCopyable {
 public:
  /// Listens at once. Throws `StoreError` for the folder and `std::system_error` for the address or
  /// port.
  Server(asio::io_context& io, Options options);
  ~Server();

  /// The port that the server listens on.
  std::uint16_t port() const;
  /// Reads the files of the folder anew.
  void reload();
  /// `why` is for the log. Takes no more connections, tells the room, and stops when all have read
  /// that, after two seconds at most. The second time it stops at once.
  void end(std::string_view why);
  /// Closes all connections and takes no more, so that the loop runs out of work.
  void stop();
  bool hasStopped() const { return stopped_; }
  /// Told once, when it stops.
  std::function<void()> onStopped;
  /// One line to the log: what has happened since the last one.
  void logStatistics();

 private:
  void accept();
  void pauseAccepting();
  void stopAccepting();
  void sweep();
  void awaitEmptyRoom(std::chrono::steady_clock::time_point until);

  void openStatus(const std::filesystem::path& folder);

  asio::io_context& io_;
  std::unique_ptr<FolderClaim> claim_;
  std::unique_ptr<Lobby> lobby_;
  std::unique_ptr<StatusSocket> status_;
  asio::ip::tcp::acceptor acceptor_;
  asio::steady_timer acceptTimer_;
  asio::steady_timer sweepTimer_;
  std::chrono::steady_clock::time_point statisticsAt_{};
  bool ownSettings_ = false;   // given by the caller, so that the folder's file doesn't count
  bool acceptFailed_ = false;  // told to the log once a run of failures
  bool ending_ = false;
  bool stopped_ = false;
  Liveness alive_;
};

}  // namespace kelvaron::server
