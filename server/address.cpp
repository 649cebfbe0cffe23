#include "server/address.h"

#include <algorithm>
#include <asio/ip/address.hpp>

namespace kelvaron::server {
namespace {

constexpr std::size_t kNetworkBytes = 8;

}  // namespace

std::string remoteAddress(const asio::ip::tcp::socket& socket) {
  std::error_code error;
  const auto endpoint = socket.remote_endpoint(error);
  if (error) return "unknown";
  const asio::ip::address address = endpoint.address();
  if (address.is_v6() && address.to_v6().is_v4_mapped()) {
    return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).to_string();
  }
  return address.to_string();
}

std::string place(const std::string& address, std::uint16_t port) {
  const bool v6 = address.find(':') != std::string::npos;
  return (v6 ? '[' + address + ']' : address) + ':' + std::to_string(port);
}

bool isAddress(std::string_view text) {
  std::error_code error;
  asio::ip::make_address(std::string(text), error);
  return !error;
}

bool isLoopback(std::string_view address) {
  return address.starts_with("127.") || address == "::1";
}

std::string sourceName(std::string_view address) {
  std::error_code error;
  const auto parsed = asio::ip::make_address_v6(std::string(address), error);
  if (error || parsed.is_loopback()) return std::string(address);
  auto bytes = parsed.to_bytes();
  std::fill(bytes.begin() + kNetworkBytes, bytes.end(), static_cast<unsigned char>(0));
  return asio::ip::address_v6(bytes).to_string() + "/64";
}

}  // namespace kelvaron::server
