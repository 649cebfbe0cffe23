// The other side of a connection in tests, in plain system calls, and a socket that keeps a log.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "native/file_descriptor.h"
#include "native/native_socket.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {

using namespace std::chrono_literals;

/// Longest wait for anything that must happen.
inline constexpr std::chrono::seconds kPatience{5};

/// A connection to the socket under test. Calls block.
class RawPeer {
 public:
  explicit RawPeer(FileDescriptor descriptor) : descriptor_(std::move(descriptor)) {}
  /// Connects to a port of loopback.
  explicit RawPeer(std::uint16_t port);

  void send(std::string_view bytes);
  /// What is there, waiting for at least one byte; empty at the end of the stream.
  std::string receive();
  std::string receiveAll();
  void endSending();
  void close() { descriptor_.reset(); }
  void reset();

 private:
  FileDescriptor descriptor_;
};

/// A listening socket on loopback.
class RawListener {
 public:
  explicit RawListener(int backlog = 16);
  std::uint16_t port() const { return port_; }
  RawPeer accept();

 private:
  FileDescriptor descriptor_;
  std::uint16_t port_ = 0;
};

/// A port of loopback that nobody listens on.
std::uint16_t freePort();

/// A socket that logs its events: "connect", "request", "data", "sent", "close", "error N".
struct LoggedSocket {
  explicit LoggedSocket(EventLoop& loop, ConnectSettings settings = {});

  /// Whether the log holds this event.
  bool saw(std::string_view event) const;

  std::vector<std::string> log;
  std::string received;
  bool reads = true;  // whether `onDataArrival` takes the data
  std::string description;
  std::unique_ptr<Socket> socket;
};

/// Connects `client` to `listener` and returns the listener's side.
RawPeer join(PollLoop& loop, LoggedSocket& client, RawListener& listener);

}  // namespace kelvaron::testing
