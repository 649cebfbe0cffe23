// Addresses of the internet family: look-up, text, and those of a connection.
#pragma once

#include <sys/socket.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "native/socket_error.h"

namespace kelvaron {

/// An IPv4 or IPv6 address with its port.
struct Endpoint {
  sockaddr_storage address{};
  socklen_t length = 0;

  /// Dotted decimal, for IPv4 addresses mapped into IPv6 too; the usual text of other IPv6 ones.
  /// Empty when there is no address.
  std::string ip() const;
  /// 0 when there is no address.
  std::uint16_t port() const;
};

/// The two ends of a socket; without an address where it has none.
Endpoint localEndpoint(int descriptor);
Endpoint remoteEndpoint(int descriptor);

/// An address written as a number, without any look-up; nothing for a name.
std::optional<Endpoint> numericEndpoint(const std::string& host, std::uint16_t port);

/// The addresses of a host in the order to try them, or why there are none.
struct Resolution {
  std::vector<Endpoint> endpoints;
  std::optional<SocketError> error;
};

/// Asks the system, which may take many seconds.
Resolution systemLookUp(const std::string& host, std::uint16_t port);

/// This machine's first IPv4 address that is up and not loopback, else "127.0.0.1".
std::string firstMachineAddress();

}  // namespace kelvaron
