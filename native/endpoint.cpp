#include "native/endpoint.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

namespace kelvaron {
namespace {

constexpr std::size_t kLongestHostName = 253;  // RFC 1035, without the final dot

Resolution lookUp(const std::string& host, std::uint16_t port, int flags) {
  if (host.size() > kLongestHostName || host.find('\0') != std::string::npos) {
    return {{}, lookUpError(EAI_NONAME, 0)};
  }
  startSockets();
  addrinfo hints{};
  hints.ai_family = AF_UNSPEC;
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = flags | AI_NUMERICSERV;
  addrinfo* first = nullptr;
  const int result = ::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &first);
  if (result != 0) return {{}, lookUpError(result, errno)};
  const std::unique_ptr<addrinfo, void (*)(addrinfo*)> list(first, &::freeaddrinfo);

  Resolution resolution;
  for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next) {
    Endpoint endpoint;
    if (entry->ai_addrlen > sizeof(endpoint.address)) continue;
    std::memcpy(&endpoint.address, entry->ai_addr, entry->ai_addrlen);
    endpoint.length = static_cast<socklen_t>(entry->ai_addrlen);
    resolution.endpoints.push_back(endpoint);
  }
  if (resolution.endpoints.empty()) resolution.error = lookUpError(EAI_NONAME, 0);
  return resolution;
}

template <class Call>
Endpoint endpointOf(int socket, Call call) {
  Endpoint endpoint;
  endpoint.length = sizeof(endpoint.address);
  if (call(handleOf(socket), reinterpret_cast<sockaddr*>(&endpoint.address), &endpoint.length) !=
      0) {
    return {};
  }
  return endpoint;
}

template <class Address>
Address as(const Endpoint& endpoint) {
  Address address{};
  std::memcpy(&address, &endpoint.address, sizeof(address));
  return address;
}

}  // namespace

std::string Endpoint::ip() const {
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (length == 0) return {};
  if (address.ss_family == AF_INET) {
    const in_addr number = as<sockaddr_in>(*this).sin_addr;
    ::inet_ntop(AF_INET, &number, text.data(), text.size());
  } else if (address.ss_family == AF_INET6) {
    const in6_addr number = as<sockaddr_in6>(*this).sin6_addr;
    if (IN6_IS_ADDR_V4MAPPED(&number)) {
      ::inet_ntop(AF_INET, &number.s6_addr[12], text.data(), text.size());
    } else {
      ::inet_ntop(AF_INET6, &number, text.data(), text.size());
    }
  }
  return text.data();
}

std::uint16_t Endpoint::port() const {
  if (length == 0) return 0;
  if (address.ss_family == AF_INET) return ntohs(as<sockaddr_in>(*this).sin_port);
  if (address.ss_family == AF_INET6) return ntohs(as<sockaddr_in6>(*this).sin6_port);
  return 0;
}

Endpoint localEndpoint(int socket) { return endpointOf(socket, &::getsockname); }
Endpoint remoteEndpoint(int socket) { return endpointOf(socket, &::getpeername); }

std::optional<Endpoint> numericEndpoint(const std::string& host, std::uint16_t port) {
  const Resolution resolution = lookUp(host, port, AI_NUMERICHOST);
  if (resolution.endpoints.empty()) return std::nullopt;
  return resolution.endpoints.front();
}

Resolution systemLookUp(const std::string& host, std::uint16_t port) {
  return lookUp(host, port, 0);
}

Resolution internetAddresses(const hostent& answer) {
  Resolution resolution;
  if (answer.h_addrtype != AF_INET) return resolution;
  for (char** address = answer.h_addr_list; *address != nullptr; ++address) {
    sockaddr_in internet{};
    internet.sin_family = AF_INET;
    std::memcpy(&internet.sin_addr, *address, sizeof(internet.sin_addr));
    Endpoint endpoint;
    endpoint.length = sizeof(internet);
    std::memcpy(&endpoint.address, &internet, sizeof(internet));
    resolution.endpoints.push_back(endpoint);
  }
  return resolution;
}

}  // namespace kelvaron
