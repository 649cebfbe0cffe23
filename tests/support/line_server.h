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
  explicit LineServer(PollLoop& loop) : sockets_(loop), listener_(sockets_.makeSocket()) {
    listener_->onConnectionRequest = [this](int id) {
      peer_ = sockets_.makeSocket();
      peer_->onDataArrival = [this] { take(); };
      peer_->Accept(id);
      unfinished_.clear();
      ++connections;
    };
    listener_->Listen(0);
  }

  std::uint16_t port() const { return listener_->LocalPort(); }
  /// Writes the bytes as they stand. Each call arrives as one read of its own if the loop turns
  /// between two.
  void say(std::string_view bytes) { peer_->SendData(bytes); }
  void hangUp() { peer_->Close(); }
  /// Stops listening, so that the next attempt is refused.
  void refuse() { listener_->Close(); }

  /// Whole lines received, without their ends.
  std::vector<std::string> lines;
  int connections = 0;

 private:
  void take() {
    unfinished_ += peer_->GetData();
    for (std::size_t end = 0; (end = unfinished_.find("\r\n")) != std::string::npos;) {
      lines.push_back(unfinished_.substr(0, end));
      unfinished_.erase(0, end + 2);
    }
  }

  NativeSocketPort sockets_;
  std::unique_ptr<Socket> listener_;
  std::unique_ptr<Socket> peer_;
  std::string unfinished_;
};

}  // namespace kelvaron::testing
