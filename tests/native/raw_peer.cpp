#include "tests/native/raw_peer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

namespace kelvaron::testing {
namespace {

void require(bool good, const char* what) {
  if (!good) throw std::system_error(errno, std::generic_category(), what);
}

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

FileDescriptor streamSocket() {
  FileDescriptor opened(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  require(static_cast<bool>(opened), "socket");
  return opened;
}

}  // namespace

RawPeer::RawPeer(std::uint16_t port) : descriptor_(streamSocket()) {
  const sockaddr_in address = loopback(port);
  require(::connect(descriptor_.get(), reinterpret_cast<const sockaddr*>(&address),
                    sizeof(address)) == 0,
          "connect");
}

void RawPeer::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(descriptor_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    require(count > 0, "send");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string RawPeer::receive() {
  std::array<char, 65536> chunk;
  const auto count = ::recv(descriptor_.get(), chunk.data(), chunk.size(), 0);
  require(count >= 0, "recv");
  return {chunk.data(), static_cast<std::size_t>(count)};
}

std::string RawPeer::receiveAll() {
  std::string all;
  for (std::string part = receive(); !part.empty(); part = receive()) all += part;
  return all;
}

void RawPeer::endSending() { require(::shutdown(descriptor_.get(), SHUT_WR) == 0, "shutdown"); }

void RawPeer::reset() {
  const linger abort{1, 0};
  require(::setsockopt(descriptor_.get(), SOL_SOCKET, SO_LINGER, &abort, sizeof(abort)) == 0,
          "linger");
  descriptor_.reset();
}

RawListener::RawListener(int backlog) : descriptor_(streamSocket()) {
  const sockaddr_in address = loopback(0);
  require(
      ::bind(descriptor_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0,
      "bind");
  require(::listen(descriptor_.get(), backlog) == 0, "listen");
  port_ = localEndpoint(descriptor_.get()).port();
}

RawPeer RawListener::accept() {
  FileDescriptor accepted(::accept4(descriptor_.get(), nullptr, nullptr, SOCK_CLOEXEC));
  require(static_cast<bool>(accepted), "accept");
  return RawPeer(std::move(accepted));
}

std::uint16_t freePort() { return RawListener().port(); }

LoggedSocket::LoggedSocket(EventLoop& loop, ConnectSettings settings)
    : socket(NativeSocketPort(loop, std::move(settings)).makeSocket()) {
  socket->onConnect = [this] { log.emplace_back("connect"); };
  socket->onConnectionRequest = [this](int) { log.emplace_back("request"); };
  socket->onDataArrival = [this] {
    log.emplace_back("data");
    if (reads) received += socket->GetData();
  };
  socket->onSendComplete = [this] { log.emplace_back("sent"); };
  socket->onClose = [this] { log.emplace_back("close"); };
  socket->onError = [this](int number, const std::string& text) {
    log.push_back("error " + std::to_string(number));
    description = text;
  };
}

bool LoggedSocket::saw(std::string_view event) const {
  return std::find(log.begin(), log.end(), event) != log.end();
}

RawPeer join(PollLoop& loop, LoggedSocket& client, RawListener& listener) {
  client.socket->Connect("127.0.0.1", listener.port());
  if (!loop.runUntil([&] { return client.saw("connect"); }, kPatience)) {
    throw std::runtime_error("no connection");
  }
  return listener.accept();
}

}  // namespace kelvaron::testing
