// Where clients come from, as numeric text.
#pragma once

#include <asio/ip/tcp.hpp>
#include <cstdint>
#include <string>
#include <string_view>

namespace kelvaron::server {

/// The address at the other end, an IPv4 address in IPv6 form in its own; "unknown" when the
/// connection is over already.
std::string remoteAddress(const asio::ip::tcp::socket& socket);

/// "127.0.0.1:3069", "[::1]:3069".
std::string place(const std::string& address, std::uint16_t port);

/// Whether it is an address of one machine, in IPv4 or IPv6.
bool isAddress(std::string_view text);

/// Whether the address is one of the machine itself: 127.0.0.0/8 or ::1.
bool isLoopback(std::string_view address);

/// The address itself, or the network of 64 bits of an IPv6 address ("2001:db8:0:1::/64"), as that
/// is what one household has.
std::string sourceName(std::string_view address);

}  // namespace kelvaron::server
