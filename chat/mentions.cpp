#include "chat/mentions.h"

#include <cctype>

#include "chat/find.h"

namespace kelvaron {
namespace {

constexpr std::string_view kPrivate = "Private Message From ";
constexpr std::string_view kServer = "[Server] ";
// Of a longer line only the beginning is looked at.
constexpr std::size_t kLongestRead = 4096;

bool isWordPart(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte >= 0x80 || std::isalnum(byte) != 0 || byte == '_';
}

}  // namespace

bool isForUser(std::string_view line, std::string_view nick) {
  if (line.starts_with(kPrivate)) return true;
  line = line.substr(0, kLongestRead);
  if (line.starts_with(kServer)) return false;
  for (std::size_t at = 0; (at = findCaseless(line, nick, at)) != std::string_view::npos; ++at) {
    const std::size_t end = at + nick.size();
    const bool whole =
        (at == 0 || !isWordPart(line[at - 1])) && (end == line.size() || !isWordPart(line[end]));
    // What begins with it is the user's own.
    if (whole) return at > 0;
  }
  return false;
}

}  // namespace kelvaron
