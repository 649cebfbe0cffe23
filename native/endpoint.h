// Addresses of the internet family: look-up, text, and those of a connection.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "native/socket_error.h"
#include "native/socket_headers.h"

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
Endpoint localEndpoint(int socket);
Endpoint remoteEndpoint(int socket);

/// An address written as a number, without any look-up; nothing for a name.
std::optional<Endpoint> numericEndpoint(const std::string& host, std::uint16_t port);

/// The addresses of a host in the order to try them, or why there are none.
struct Resolution {
  std::vector<Endpoint> endpoints;
  std::optional<SocketError> error;
};

/// What some systems want before the first socket or look-up; again, it does nothing.
void startSockets();

/// Asks the system, which may take many seconds.
Resolution systemLookUp(const std::string& host, std::uint16_t port);

/// The IPv4 addresses of an answer of the name service, in its order; none where it has others.
Resolution internetAddresses(const hostent& answer);

}  // namespace kelvaron
