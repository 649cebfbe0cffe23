#include "native/posix/echo_packet.h"

#include <linux/icmp.h>

#include <cstddef>

namespace kelvaron {
namespace {

constexpr std::size_t kHeadBytes = 8;

unsigned byteAt(std::string_view bytes, std::size_t index) {
  return static_cast<unsigned char>(bytes[index]);
}
unsigned wordAt(std::string_view bytes, std::size_t index) {
  return (byteAt(bytes, index) << 8U) | byteAt(bytes, index + 1);
}
void setWord(std::string& bytes, std::size_t index, unsigned word) {
  bytes[index] = static_cast<char>(word >> 8U);
  bytes[index + 1] = static_cast<char>(word & 0xFFU);
}

unsigned checksum(std::string_view bytes) {
  unsigned sum = 0;
  for (std::size_t index = 0; index + 1 < bytes.size(); index += 2) sum += wordAt(bytes, index);
  if (bytes.size() % 2 != 0) sum += byteAt(bytes, bytes.size() - 1) << 8U;
  while (sum > 0xFFFFU) sum = (sum & 0xFFFFU) + (sum >> 16U);
  return ~sum & 0xFFFFU;
}

}  // namespace

std::string echoRequest(EchoMark mark, std::string_view data) {
  std::string message(kHeadBytes, '\0');
  message[0] = static_cast<char>(ICMP_ECHO);
  setWord(message, 4, mark.id);
  setWord(message, 6, mark.sequence);
  message += data;
  setWord(message, 2, checksum(message));
  return message;
}

bool isEchoReply(std::string_view message, EchoMark mark, std::string_view data, bool anyId) {
  return message.size() == kHeadBytes + data.size() && byteAt(message, 0) == ICMP_ECHOREPLY &&
         byteAt(message, 1) == 0 && (anyId || wordAt(message, 4) == mark.id) &&
         wordAt(message, 6) == mark.sequence && message.substr(kHeadBytes) == data;
}

std::string_view withoutIpHead(std::string_view packet) {
  constexpr unsigned kWordsMask = 0x0F;
  const std::size_t head = packet.empty() ? 0 : (byteAt(packet, 0) & kWordsMask) * 4;
  return head == 0 || packet.size() < head ? std::string_view() : packet.substr(head);
}

}  // namespace kelvaron
