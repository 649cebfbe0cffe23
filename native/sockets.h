// Sockets of the system, in its own calls. Where one fails, errno says why, on each system in the
// numbers of POSIX.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "native/descriptor.h"
#include "native/endpoint.h"

namespace kelvaron {

void closeSocket(int number);

using SocketDescriptor = Descriptor<closeSocket>;

/// A non-blocking TCP socket that no started program inherits.
SocketDescriptor openStream(int family);
/// A connection that waits at `listener`, non-blocking as well.
SocketDescriptor acceptOne(int listener);

/// Zero when it is joined at once; else -1, with EINPROGRESS in errno while it is under way.
int beginToConnect(int socket, const Endpoint& to);
/// Why an attempt that is no longer under way failed, an errno value; zero when it is joined.
int connectError(int socket);

/// Makes the port this socket's alone, and listens. Zero, or -1.
int bindAndListen(int socket, const Endpoint& at, int backlog);
/// Lets an IPv6 socket serve IPv4 too.
void serveBothFamilies(int socket);
/// Options of every connection: small sends go out at once, and a dead line is noticed: silent for
/// a minute, it is asked every 15 s; what is not acknowledged for two minutes is lost.
void setConnectionOptions(int socket);

/// How many bytes came or went, fewer than asked for where there are no more for now; 0 from
/// `receiveSome` is the end of the stream, -1 a failure.
std::ptrdiff_t receiveSome(int socket, std::span<char> bytes);
std::ptrdiff_t sendSome(int socket, std::string_view bytes);
/// Tells the other side that nothing more is sent. Fails only where the connection is gone already.
void endSending(int socket);

}  // namespace kelvaron
