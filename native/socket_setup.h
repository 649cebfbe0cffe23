// Descriptors set up for use: options of a connection, a listening socket.
#pragma once

#include <cstdint>

#include "native/file_descriptor.h"

namespace kelvaron {

/// Options of every connection: small sends go out at once, and a dead line is noticed.
void setConnectionOptions(int descriptor);

/// A non-blocking socket that listens on all addresses of both families, of IPv4 alone where the
/// machine has no IPv6. Without a descriptor on failure; then errno says why.
FileDescriptor listenOnAllAddresses(std::uint16_t port);

/// Tells the other side that nothing more is sent and closes. What the system has taken is still
/// delivered, for which bytes that nobody will read are drained first: a close over unread bytes
/// resets the connection and throws away what is under way.
void closeGently(FileDescriptor connection);

}  // namespace kelvaron
