// Upper case, cleaning and the shape of nicknames and sound names.
#include "server/text.h"

#include <algorithm>
#include <array>

namespace kelvaron::server {
namespace {

constexpr std::size_t kSoundLimit = 64;
constexpr std::size_t kLoggedLimit = 64;
constexpr std::array<std::string_view, 3> kTags = {"[IG]", "[CS]", "[AW]"};

bool isControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 32 || byte == 127 || byte == 129 || byte == 141 || byte == 143 || byte == 144 ||
         byte == 157;
}

// The characters of the bytes 128 to 159; the five that have none are never asked for.
constexpr std::array<char16_t, 32> kUpperHalf = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD, 0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178};

void appendUtf8(std::string& text, unsigned character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | (character >> 12));
    text += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

unsigned upper(unsigned byte) {
  if ((byte >= 'a' && byte <= 'z') || (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7)) {
    return byte - 32;
  }
  switch (byte) {
    case 0x9A:  // s, z with caron and the ligature oe stand 16 behind their capitals
    case 0x9C:
    case 0x9E:
      return byte - 16;
    case 0xFF:  // y with diaeresis
      return 0x9F;
    default:
      return byte;
  }
}

}  // namespace

std::string fold(std::string_view text) {
  std::string folded(text);
  for (char& character : folded) {
    character = static_cast<char>(upper(static_cast<unsigned char>(character)));
  }
  return folded;
}

std::string cleaned(std::string_view field) {
  std::string text(field);
  std::replace_if(text.begin(), text.end(), isControl, ' ');
  return text;
}

void cleanLine(std::string& line) {
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c != '\t' && isControl(c); }, ' ');
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isValidNick(std::string_view nick) {
  return !nick.empty() && nick.size() <= kNickLimit &&
         nick.find_first_of(" []\xA5\xA0\xAD") == std::string_view::npos &&
         std::none_of(nick.begin(), nick.end(), isControl);
}

std::string_view bareNick(std::string_view shown) {
  shown = trimmed(shown);
  const auto endsSo = [&](std::string_view tag) { return shown.ends_with(tag); };
  if (std::any_of(kTags.begin(), kTags.end(), endsSo)) shown.remove_suffix(kTags[0].size());
  if (shown.starts_with(kModeratorMark)) shown.remove_prefix(kModeratorMark.size());
  return shown;
}

std::string forLog(std::string_view told) {
  std::string text;
  for (const char character : cleaned(told.substr(0, kLoggedLimit))) {
    const auto byte = static_cast<unsigned char>(character);
    appendUtf8(text, byte >= 0x80 && byte < 0xA0 ? kUpperHalf[byte - 0x80U] : byte);
  }
  return text;
}

bool isSafeSound(std::string_view name) {
  return !name.empty() && name.size() <= kSoundLimit &&
         name.find_first_of("./\\:*?\"<>|") == std::string_view::npos &&
         std::none_of(name.begin(), name.end(), isControl);
}

}  // namespace kelvaron::server
