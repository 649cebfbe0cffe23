#include "native/sockets.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include "native/socket_headers.h"
#include "native/windows/winsock.h"

namespace kelvaron {
namespace {

constexpr DWORD kIdleMs = 60'000;     // before the first probe of a silent line
constexpr DWORD kProbeMs = 15'000;    // between probes
constexpr DWORD kUserTimeoutS = 120;  // unacknowledged for so long: the line is dead
// Of ws2ipdef.h, which mingw has without it.
constexpr int kTcpMaxRt = 5;

// An option that this system lacks leaves its default, with which the connection works as well.
void setOption(int socket, int level, int option, DWORD value) {
  static_cast<void>(::setsockopt(handleOf(socket), level, option,
                                 reinterpret_cast<const char*>(&value), sizeof(value)));
}

const sockaddr* generic(const Endpoint& endpoint) {
  return reinterpret_cast<const sockaddr*>(&endpoint.address);
}

int lengthOf(std::size_t size) {
  return static_cast<int>(std::min<std::size_t>(size, std::numeric_limits<int>::max()));
}

/// Zero, or -1 with the reason in errno.
int told(int result) {
  if (result == 0) return 0;
  errno = winsockErrno();
  return -1;
}

SocketDescriptor prepared(SOCKET opened) {
  if (opened == INVALID_SOCKET) {
    errno = winsockErrno();
    return {};
  }
  setNonBlocking(opened);
  static_cast<void>(
      ::SetHandleInformation(reinterpret_cast<HANDLE>(opened), HANDLE_FLAG_INHERIT, 0));
  return SocketDescriptor(static_cast<int>(opened));
}

}  // namespace

void closeSocket(int number) { ::closesocket(handleOf(number)); }

SocketDescriptor openStream(int family) {
  startSockets();
  return prepared(::WSASocketW(family, SOCK_STREAM, IPPROTO_TCP, nullptr, 0, WSA_FLAG_OVERLAPPED));
}

SocketDescriptor acceptOne(int listener) {
  return prepared(::accept(handleOf(listener), nullptr, nullptr));
}

int beginToConnect(int socket, const Endpoint& to) {
  const int result = told(::connect(handleOf(socket), generic(to), to.length));
  if (result != 0 && errno == EWOULDBLOCK) errno = EINPROGRESS;
  return result;
}

int connectError(int socket) {
  DWORD error = 0;
  int length = sizeof(error);
  if (::getsockopt(handleOf(socket), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error),
                   &length) != 0) {
    return winsockErrno();
  }
  return error == 0 ? 0 : errnoOfWinsock(static_cast<int>(error));
}

int bindAndListen(int socket, const Endpoint& at, int backlog) {
  // Else another program could take the port's connections for itself.
  setOption(socket, SOL_SOCKET, SO_EXCLUSIVEADDRUSE, 1);
  if (::bind(handleOf(socket), generic(at), at.length) != 0) {
    static_cast<void>(told(SOCKET_ERROR));
    // So the system refuses a port that another socket has for itself.
    if (errno == EACCES) errno = EADDRINUSE;
    return -1;
  }
  return told(::listen(handleOf(socket), backlog));
}

void serveBothFamilies(int socket) { setOption(socket, IPPROTO_IPV6, IPV6_V6ONLY, 0); }

void setConnectionOptions(int socket) {
  setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
  tcp_keepalive probes{1, kIdleMs, kProbeMs};
  DWORD got = 0;
  static_cast<void>(::WSAIoctl(handleOf(socket), SIO_KEEPALIVE_VALS, &probes, sizeof(probes),
                               nullptr, 0, &got, nullptr, nullptr));
  setOption(socket, IPPROTO_TCP, kTcpMaxRt, kUserTimeoutS);
}

std::ptrdiff_t receiveSome(int socket, std::span<char> bytes) {
  const int count = ::recv(handleOf(socket), bytes.data(), lengthOf(bytes.size()), 0);
  return count >= 0 ? count : told(count);
}

std::ptrdiff_t sendSome(int socket, std::string_view bytes) {
  const int count = ::send(handleOf(socket), bytes.data(), lengthOf(bytes.size()), 0);
  return count >= 0 ? count : told(count);
}

void endSending(int socket) { static_cast<void>(::shutdown(handleOf(socket), SD_SEND)); }

}  // namespace kelvaron
