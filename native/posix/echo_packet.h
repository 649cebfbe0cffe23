// The bytes of an ICMP echo.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvaron {

/// What tells one echo from another.
struct EchoMark {
  /// A datagram socket puts a number of its own here.
  std::uint16_t id = 0;
  std::uint16_t sequence = 0;
};

/// An echo request with its checksum.
std::string echoRequest(EchoMark mark, std::string_view data);

/// Whether an ICMP message is the reply to `echoRequest(mark, data)`. `anyId` is for sockets that
/// see only replies to their own requests.
bool isEchoReply(std::string_view message, EchoMark mark, std::string_view data, bool anyId);

/// The message in a packet with its IPv4 head, as a raw socket gives it; empty where it is cut.
std::string_view withoutIpHead(std::string_view packet);

}  // namespace kelvaron
