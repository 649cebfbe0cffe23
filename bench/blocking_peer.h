// The server's end of a benchmark: plain blocking calls, so that it costs as little as can be.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron::bench {

class BlockingPeer : NonCopyable {
 public:
  BlockingPeer() : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener_, generic, size) != 0 || ::listen(listener_, 4) != 0 ||
        ::getsockname(listener_, generic, &size) != 0) {
      throw std::runtime_error("the peer could not listen");
    }
    port_ = ntohs(address.sin_port);
  }
  ~BlockingPeer() {
    ::close(listener_);
    if (connection_ >= 0) ::close(connection_);
  }

  std::uint16_t port() const { return port_; }

  void accept() {
    connection_ = ::accept(listener_, nullptr, nullptr);
    const int on = 1;
    ::setsockopt(connection_, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  }
  void send(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t sent = ::send(connection_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (sent <= 0) throw std::runtime_error("the peer could not send");
      bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
  }
  /// Waits for bytes and gives their number; 0 at the end of the connection.
  std::size_t receive() const {
    char bytes[4096];
    const ssize_t got = ::recv(connection_, bytes, sizeof bytes, 0);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
  }

 private:
  int listener_;
  int connection_ = -1;
  std::uint16_t port_ = 0;
};

}  // namespace kelvaron::bench
