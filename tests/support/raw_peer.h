// The other side of a connection in tests, in plain system calls, and a socket that keeps a log.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "native/native_socket.h"
#include "native/socket_headers.h"
#include "native/sockets.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {

using namespace std::chrono_literals;

using Log = std::vector<std::string>;

/// Longest wait for anything that must happen.
inline constexpr std::chrono::seconds kPatience{5};

/// Whether the system tells a reset from an end. Under Wine, a read that meets one sees an end, and
/// a write behind an end a reset.
#ifdef _WIN32
inline constexpr bool kResetsAreTold = false;
#else
inline constexpr bool kResetsAreTold = true;
#endif

inline void require(bool good, const char* what) {
  if (!good) throw std::system_error(errno, std::generic_category(), what);
}

/// One that blocks.
inline SocketDescriptor streamSocket() {
  SocketDescriptor opened(static_cast<int>(::socket(AF_INET, SOCK_STREAM, 0)));
  require(static_cast<bool>(opened), "socket");
  return opened;
}

inline Endpoint loopback(std::uint16_t port) { return *numericEndpoint("127.0.0.1", port); }

/// A connection to the socket under test. Calls block.
class RawPeer {
 public:
  explicit RawPeer(SocketDescriptor descriptor) : descriptor_(std::move(descriptor)) {}
  /// Connects to a port of loopback.
  explicit RawPeer(std::uint16_t port) : descriptor_(streamSocket()) {
    require(beginToConnect(descriptor_.get(), loopback(port)) == 0, "connect");
  }

  void send(std::string_view bytes) {
    while (!bytes.empty()) {
      const auto count = sendSome(descriptor_.get(), bytes);
      require(count > 0, "send");
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }
  /// What is there, waiting for at least one byte; empty at the end of the stream.
  std::string receive() {
    std::array<char, 65536> chunk;
    const auto count = receiveSome(descriptor_.get(), chunk);
    require(count >= 0, "recv");
    return {chunk.data(), static_cast<std::size_t>(count)};
  }
  std::string receiveAll() {
    std::string all;
    for (std::string part = receive(); !part.empty(); part = receive()) all += part;
    return all;
  }
  void endSending() { kelvaron::endSending(descriptor_.get()); }
  void close() { descriptor_.reset(); }
  void reset() {
    const linger abort{1, 0};
    ::setsockopt(handleOf(descriptor_.get()), SOL_SOCKET, SO_LINGER,
                 reinterpret_cast<const char*>(&abort), sizeof(abort));
    descriptor_.reset();
  }

 private:
  SocketDescriptor descriptor_;
};

/// A listening socket on loopback.
class RawListener {
 public:
  explicit RawListener(int backlog = 16) : descriptor_(streamSocket()) {
    require(bindAndListen(descriptor_.get(), loopback(0), backlog) == 0, "listen");
  }
  std::uint16_t port() const { return localEndpoint(descriptor_.get()).port(); }
  RawPeer accept() {
    SocketDescriptor accepted(
        static_cast<int>(::accept(handleOf(descriptor_.get()), nullptr, nullptr)));
    require(static_cast<bool>(accepted), "accept");
    return RawPeer(std::move(accepted));
  }

 private:
  SocketDescriptor descriptor_;
};

/// A port of loopback that nobody listens on.
inline std::uint16_t freePort() { return RawListener().port(); }

/// A socket that logs its events: "connect", "request", "data", "sent", "close", "error N".
struct LoggedSocket {
  explicit LoggedSocket(EventLoop& loop, ConnectSettings settings = {})
      : socket(NativeSocketPort(loop, std::move(settings)).makeSocket()) {
    socket->onConnect = [this] { log.emplace_back("connect"); };
    socket->onConnectionRequest = [this](int) { log.emplace_back("request"); };
    socket->onDataArrival = [this] {
      log.emplace_back("data");
      if (reads) received += socket->GetData();
    };
    socket->onSendComplete = [this] { log.emplace_back("sent"); };
    socket->onClose = [this] { log.emplace_back("close"); };
    socket->onError = [this](int number, const std::string& text) {
      log.push_back("error " + std::to_string(number));
      description = text;
    };
  }
  bool saw(std::string_view event) const { return std::ranges::find(log, event) != log.end(); }

  Log log;
  std::string received;
  bool reads = true;  // whether `onDataArrival` takes the data
  std::string description;
  std::unique_ptr<Socket> socket;
};

class SocketTest : public ::testing::Test {
 protected:
  void runUntil(const std::function<bool()>& done) { ASSERT_TRUE(loop.runUntil(done, kPatience)); }
  void runFor(std::chrono::milliseconds time) {
    loop.runUntil([] { return false; }, time);
  }
  /// Connects the socket to `listener` and returns the listener's side.
  RawPeer join(LoggedSocket& connecting) {
    connecting.socket->Connect("127.0.0.1", listener.port());
    runUntil([&] { return connecting.saw("connect"); });
    return listener.accept();
  }

  PollLoop loop;
  RawListener listener;
  LoggedSocket client{loop};
};

}  // namespace kelvaron::testing
