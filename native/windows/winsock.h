// Winsock's handles and numbers beside those of POSIX.
#pragma once

#include "native/socket_headers.h"

namespace kelvaron {

/// Cannot fail on a socket that is open.
void setNonBlocking(SOCKET socket);

/// The number of POSIX for one of Winsock's, which stays itself where POSIX has none.
int errnoOfWinsock(int error);
/// Of what failed last on this thread.
int winsockErrno();

}  // namespace kelvaron
