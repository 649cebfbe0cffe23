// The other end of a client's connection, under a test's control: it reads lines and says lines.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "native/native_socket.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {

class LineServer {
 public:
  explicit LineServer(PollLoop& loop);

  std::uint16_t port() const { return listener_->LocalPort(); }
  bool connected() const { return peer_ != nullptr && peer_->State() == SocketState::connected; }
  /// Writes the bytes as they stand. Each call arrives as one read of its own if the loop turns
  /// between two.
  void say(std::string_view bytes);
  void hangUp() { peer_->Close(); }
  /// Stops listening, so that the next attempt is refused.
  void refuse() { listener_->Close(); }

  /// Whole lines received, without their ends.
  std::vector<std::string> lines;
  int connections = 0;

 private:
  void take();

  NativeSocketPort sockets_;
  std::unique_ptr<Socket> listener_;
  std::unique_ptr<Socket> peer_;
  std::string unfinished_;
};

}  // namespace kelvaron::testing
