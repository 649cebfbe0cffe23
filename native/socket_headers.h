// The system's own declarations of sockets and names; the one place that includes them for both
// systems.
#pragma once

#ifdef _WIN32
#include "native/windows/system_headers.h"
#else
#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

namespace kelvaron {

#ifdef _WIN32
/// Winsock's handle, which has 32 significant bits, so that a descriptor holds one.
inline SOCKET handleOf(int descriptor) {
  return static_cast<SOCKET>(static_cast<unsigned>(descriptor));
}
#else
inline int handleOf(int descriptor) { return descriptor; }
#endif

}  // namespace kelvaron
