// Sockets set up for use, and taken leave of.
#pragma once

#include <cstdint>

#include "native/sockets.h"

namespace kelvaron {

/// A non-blocking socket that listens on all addresses of both families, of IPv4 alone where the
/// machine has no IPv6. Without a descriptor on failure; then errno says why.
SocketDescriptor listenOnAllAddresses(std::uint16_t port);

/// Tells the other side that nothing more is sent and closes. What the system has taken is still
/// delivered, for which bytes that nobody will read are drained first: a close over unread bytes
/// resets the connection and throws away what is under way.
void closeGently(SocketDescriptor connection);

}  // namespace kelvaron
