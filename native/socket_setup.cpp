#include "native/socket_setup.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace kelvaron {
namespace {

constexpr int kBacklog = 64;
constexpr int kIdleSeconds = 60;         // before the first probe of a silent line
constexpr int kProbeSeconds = 15;        // between probes
constexpr int kUserTimeoutMs = 120'000;  // unacknowledged for so long: the line is dead
constexpr std::size_t kDrainLimit = std::size_t{1} << 20U;

// An option that this kernel lacks leaves its default, with which the connection works as well.
void setOption(int descriptor, int level, int option, int value) {
  static_cast<void>(::setsockopt(descriptor, level, option, &value, sizeof(value)));
}

template <class Address>
bool bindAndListen(int descriptor, const Address& address) {
  return ::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
         ::listen(descriptor, kBacklog) == 0;
}

FileDescriptor openListener(int family) {
  FileDescriptor opened(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (opened) setOption(opened.get(), SOL_SOCKET, SO_REUSEADDR, 1);
  return opened;
}

}  // namespace

void setConnectionOptions(int descriptor) {
  setOption(descriptor, IPPROTO_TCP, TCP_NODELAY, 1);
  setOption(descriptor, SOL_SOCKET, SO_KEEPALIVE, 1);
  setOption(descriptor, IPPROTO_TCP, TCP_KEEPIDLE, kIdleSeconds);
  setOption(descriptor, IPPROTO_TCP, TCP_KEEPINTVL, kProbeSeconds);
  setOption(descriptor, IPPROTO_TCP, TCP_USER_TIMEOUT, kUserTimeoutMs);
}

FileDescriptor listenOnAllAddresses(std::uint16_t port) {
  if (FileDescriptor both = openListener(AF_INET6)) {
    setOption(both.get(), IPPROTO_IPV6, IPV6_V6ONLY, 0);
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    if (bindAndListen(both.get(), address)) return both;
    if (errno != EADDRNOTAVAIL) return {};  // else IPv6 is built in but turned off
  }
  FileDescriptor listener = openListener(AF_INET);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  if (!listener || !bindAndListen(listener.get(), address)) return {};
  return listener;
}

void closeGently(FileDescriptor connection) {
  // Fails only where the connection is gone already.
  static_cast<void>(::shutdown(connection.get(), SHUT_WR));
  std::array<char, std::size_t{16} << 10U> unread;
  for (std::size_t drained = 0; drained < kDrainLimit;) {
    const auto count = ::recv(connection.get(), unread.data(), unread.size(), 0);
    if (count <= 0) return;
    drained += static_cast<std::size_t>(count);
  }
}

}  // namespace kelvaron
