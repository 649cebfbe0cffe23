// The system's declarations, without the macros that stand in the way of ours.
#pragma once

// Before windows.h, which would bring in the sockets of an older version.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <windows.h>

#undef HKEY_LOCAL_MACHINE
