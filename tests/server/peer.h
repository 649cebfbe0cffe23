// A server on a thread of its own, and clients that speak to it over loopback.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "base/non_copyable.h"
#include "server/server.h"
#include "server/store.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::server {

using Lines = std::vector<std::string>;

using testing::TemporaryFolder;

using Changes = std::initializer_list<std::pair<long Settings::*, long>>;
/// No slow-down, short times where a test waits for the time-out, and what a test wants otherwise.
Settings quickSettings(Changes changes = {});

/// What the server tells a user whom it refuses something.
inline std::string refusal(const std::string& text) {
  return "STATUSTEXT\t7895295\t[Server] " + text;
}
/// What it tells a newcomer before anything that it announces.
inline std::string welcome(const std::string& nick) {
  return "STATUSTEXT\t15857248\t[Server] Welcome, " + nick + ". Type /? to see the commands.";
}
inline const std::string kGranted =
    "STATUSTEXT\t8454016\tModerator Privlidges Granted - You are now a moderator.";

/// Waits some seconds for what holds in the end; whether it did.
bool eventually(const std::function<bool()>& holds);

class RunningServer : NonCopyable {
 public:
  explicit RunningServer(const std::filesystem::path& folder, Changes changes = {});
  ~RunningServer();

  std::uint16_t port() const { return port_; }
  void runOnLoop(const std::function<void(Server&)>& call);
  /// Waits until the log holds the text behind the last text; whether it came.
  bool logs(std::string_view text);

 private:
  asio::io_context io_{1};
  std::mutex logMutex_;
  std::string log_;
  std::size_t logRead_ = 0;
  std::unique_ptr<Server> server_;
  std::uint16_t port_;
  std::thread thread_;
};

/// A client whose reads give up after some seconds, with a failure of the test.
class Peer {
 public:
  explicit Peer(std::uint16_t port);
  /// Logs in and waits for the user list.
  Peer(std::uint16_t port, std::string nick);
  /// The first answer to a login on a connection that ends then.
  static std::string loginAnswer(std::uint16_t port, const std::string& nick);

  void logIn(const std::string& nick) { send("Name\t" + nick + "\t10.0.0.7"); }
  void send(std::string_view line);
  void sendRaw(std::string_view bytes);

  /// The next line without its line end, or "(closed)" at the end of the connection.
  std::string next();
  /// Reads up to and including this line; whether it came.
  bool gets(std::string_view line);
  bool gets(std::string_view line, std::string_view onceItSent) {
    send(onceItSent);
    return gets(line);
  }
  /// Reads up to the end of the connection; whether it came within the time.
  bool isClosed() { return gets("(closed)"); }
  /// All lines that the server has for this client once it has handled all that this client sent;
  /// user lists and announcements are left out unless asked for.
  Lines lines(bool all = false);
  /// As `lines`, of another client, once the server has handled what this one sent.
  Lines sentTo(Peer& other) {
    lines();
    return other.lines();
  }
  /// Reads on until the newest user list is this one; whether it came.
  bool getsList(const Lines& entries);

  asio::ip::tcp::socket& socket() { return socket_; }

 private:
  asio::io_context io_;
  asio::ip::tcp::socket socket_;
  std::string nick_;
  std::string received_;
  int fences_ = 0;
};

/// A server in a folder of its own, with two users in the room.
struct TwoUsers {
  explicit TwoUsers(Changes changes = {}) : running(folder.path(), changes) {}
  TemporaryFolder folder;
  RunningServer running;
  Peer alice{running.port(), "alice"};
  Peer bob{running.port(), "bob"};
};

}  // namespace kelvaron::server
