#include "native/socket_setup.h"

#include <array>
#include <cerrno>

#include "native/socket_headers.h"

namespace kelvaron {
namespace {

constexpr int kBacklog = 64;
constexpr std::size_t kDrainLimit = std::size_t{1} << 20U;

}  // namespace

SocketDescriptor listenOnAllAddresses(std::uint16_t port) {
  if (SocketDescriptor both = openStream(AF_INET6)) {
    serveBothFamilies(both.get());
    if (bindAndListen(both.get(), *numericEndpoint("::", port), kBacklog) == 0) return both;
    if (errno != EADDRNOTAVAIL) return {};  // else IPv6 is built in but turned off
  }
  SocketDescriptor listener = openStream(AF_INET);
  const Endpoint any = *numericEndpoint("0.0.0.0", port);
  if (!listener || bindAndListen(listener.get(), any, kBacklog) != 0) return {};
  return listener;
}

void closeGently(SocketDescriptor connection) {
  endSending(connection.get());
  std::array<char, std::size_t{16} << 10U> unread;
  for (std::size_t drained = 0; drained < kDrainLimit;) {
    const auto count = receiveSome(connection.get(), unread);
    if (count <= 0) return;
    drained += static_cast<std::size_t>(count);
  }
}

}  // namespace kelvaron
