#include "engines/meeting.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <memory>

#include "engines/doomsday.h"

namespace kelvaron::engines {
namespace {

constexpr int kPatience = 500;  // milliseconds

using Addresses = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

Addresses resolve(const char* address, const char* port, int type) {
  addrinfo wanted{};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = type;
  wanted.ai_flags = AI_NUMERICSERV | AI_PASSIVE;
  addrinfo* found = nullptr;
  if (const int error = ::getaddrinfo(address, port, &wanted, &found)) {
    throw Refusal(std::string(address == nullptr ? "this machine" : address) +
                  " is no address: " + ::gai_strerror(error));
  }
  return {found, &::freeaddrinfo};
}

class Connection {
 public:
  explicit Connection(int type)
      : socket_(::socket(AF_INET, type | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { ::close(socket_); }

  int get() const { return socket_; }
  bool connect(const addrinfo& place) const {
    return ::connect(socket_, place.ai_addr, place.ai_addrlen) == 0 || errno == EINPROGRESS;
  }
  bool ready(short what) const {
    pollfd wanted{socket_, what, 0};
    return ::poll(&wanted, 1, kPatience) == 1;
  }

 private:
  int socket_;
};

}  // namespace

// A query has two bytes, the highest first; what answers has these, the host's version up to a
// NUL, and how far the game is: waiting for players, waiting for its start, begun.
std::optional<Host> chocolateAt(const std::string& address) {
  constexpr std::array<char, 2> kQuery{0, 13};
  constexpr char kAnswer = 14;
  constexpr char kBegun = 2;
  const Addresses place = resolve(address.c_str(), kChocolatePort, SOCK_DGRAM);
  const Connection line(SOCK_DGRAM);
  std::array<char, 1'400> answer{};
  if (!line.connect(*place) || ::send(line.get(), kQuery.data(), kQuery.size(), 0) < 0 ||
      !line.ready(POLLIN)) {
    return std::nullopt;
  }
  const ssize_t size = ::recv(line.get(), answer.data(), answer.size() - 2, 0);
  if (size < 4 || answer[0] != 0 || answer[1] != kAnswer) return std::nullopt;
  Host host{.version = answer.data() + 2};  // which a NUL ends, as the rest of the array is
  host.begun = answer.at(host.version.size() + 3) == kBegun;
  for (char& letter : host.version) {
    if (letter < ' ' || letter > '~') letter = '?';
  }
  return host;
}

bool doomsdayListens(const std::string& address) {
  const Addresses place = resolve(address.c_str(), kDoomsdayPort, SOCK_STREAM);
  const Connection line(SOCK_STREAM);
  if (!line.connect(*place) || !line.ready(POLLOUT)) return false;
  int error = 0;
  socklen_t size = sizeof error;
  return ::getsockopt(line.get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

std::optional<Host> hostAt(const std::string& address) {
  if (doomsdayListens(address)) return Host{};
  return chocolateAt(address);
}

bool portTaken(int type, const char* port) {
  const Addresses place = resolve(nullptr, port, type);
  const Connection line(type);
  // As the engines do: what is only left of a game that has ended is no hindrance.
  const int reuse = type == SOCK_STREAM ? 1 : 0;
  ::setsockopt(line.get(), SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
  return ::bind(line.get(), place->ai_addr, place->ai_addrlen) != 0 && errno == EADDRINUSE;
}

}  // namespace kelvaron::engines
