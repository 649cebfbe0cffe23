#include "native/sockets.h"

#include <unistd.h>

#include <cerrno>

#include "native/socket_headers.h"

namespace kelvaron {
namespace {

constexpr int kIdleSeconds = 60;         // before the first probe of a silent line
constexpr int kProbeSeconds = 15;        // between probes
constexpr int kUserTimeoutMs = 120'000;  // unacknowledged for so long: the line is dead

// An option that this kernel lacks leaves its default, with which the connection works as well.
void setOption(int socket, int level, int option, int value) {
  static_cast<void>(::setsockopt(socket, level, option, &value, sizeof(value)));
}

const sockaddr* generic(const Endpoint& endpoint) {
  return reinterpret_cast<const sockaddr*>(&endpoint.address);
}

}  // namespace

void startSockets() {}

void closeSocket(int number) { ::close(number); }

SocketDescriptor openStream(int family) {
  return SocketDescriptor(::socket(family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

SocketDescriptor acceptOne(int listener) {
  return SocketDescriptor(::accept4(listener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
}

int beginToConnect(int socket, const Endpoint& to) {
  return ::connect(socket, generic(to), to.length);
}

int connectError(int socket) {
  int error = 0;
  socklen_t length = sizeof(error);
  return ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length) == 0 ? error : errno;
}

int bindAndListen(int socket, const Endpoint& at, int backlog) {
  // A port whose last connections are still being taken leave of is free.
  setOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
  return ::bind(socket, generic(at), at.length) == 0 ? ::listen(socket, backlog) : -1;
}

void serveBothFamilies(int socket) { setOption(socket, IPPROTO_IPV6, IPV6_V6ONLY, 0); }

void setConnectionOptions(int socket) {
  setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
  setOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
  setOption(socket, IPPROTO_TCP, TCP_KEEPIDLE, kIdleSeconds);
  setOption(socket, IPPROTO_TCP, TCP_KEEPINTVL, kProbeSeconds);
  setOption(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, kUserTimeoutMs);
}

std::ptrdiff_t receiveSome(int socket, std::span<char> bytes) {
  return ::recv(socket, bytes.data(), bytes.size(), 0);
}

std::ptrdiff_t sendSome(int socket, std::string_view bytes) {
  return ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void endSending(int socket) { static_cast<void>(::shutdown(socket, SHUT_WR)); }

}  // namespace kelvaron
