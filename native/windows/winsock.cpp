#include "native/windows/winsock.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include "native/endpoint.h"

namespace kelvaron {
namespace {

constexpr std::array<std::pair<int, int>, 23> kErrors{{
    {WSAEINTR, EINTR},
    {WSAEACCES, EACCES},
    {WSAEINVAL, EINVAL},
    {WSAEFAULT, EFAULT},
    {WSAEMFILE, EMFILE},
    {WSAEWOULDBLOCK, EWOULDBLOCK},
    {WSAENOTSOCK, ENOTSOCK},
    {WSAEAFNOSUPPORT, EAFNOSUPPORT},
    {WSAEADDRINUSE, EADDRINUSE},
    {WSAEADDRNOTAVAIL, EADDRNOTAVAIL},
    {WSAENETDOWN, ENETDOWN},
    {WSAENETUNREACH, ENETUNREACH},
    {WSAENETRESET, ENETRESET},
    {WSAECONNABORTED, ECONNABORTED},
    {WSAECONNRESET, ECONNRESET},
    {WSAENOBUFS, ENOBUFS},
    {WSA_NOT_ENOUGH_MEMORY, ENOMEM},
    {WSAENOTCONN, ENOTCONN},
    {WSAESHUTDOWN, EPIPE},
    {WSAETIMEDOUT, ETIMEDOUT},
    {WSAECONNREFUSED, ECONNREFUSED},
    {WSAEHOSTUNREACH, EHOSTUNREACH},
    {WSAEALREADY, EINPROGRESS},
}};

}  // namespace

void startSockets() {
  static const int started = [] {
    WSADATA data{};
    return ::WSAStartup(MAKEWORD(2, 2), &data);
  }();
  static_cast<void>(started);  // else every call says that it was not started
}

void setNonBlocking(SOCKET socket) {
  u_long on = 1;
  static_cast<void>(::ioctlsocket(socket, static_cast<long>(FIONBIO), &on));
}

int errnoOfWinsock(int error) {
  const auto* const found = std::ranges::find(kErrors, error, &std::pair<int, int>::first);
  return found == kErrors.end() ? error : found->second;
}

int winsockErrno() { return errnoOfWinsock(::WSAGetLastError()); }

}  // namespace kelvaron
