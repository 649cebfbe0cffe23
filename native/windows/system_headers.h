// The system's declarations, without the macros that stand in the way of ours.
#pragma once

// Each needs those before it.
// clang-format off
#include <winsock2.h>
#include <ws2tcpip.h>
#include <mstcpip.h>
#include <windows.h>
#include <iphlpapi.h>
#include <icmpapi.h>
#include <shellapi.h>
// clang-format on

#undef HKEY_LOCAL_MACHINE
