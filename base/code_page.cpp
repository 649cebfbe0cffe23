#include "base/code_page.h"

#include <algorithm>
#include <array>

namespace kelvaron {
namespace {

// Bytes 128 to 159; the rest of the code page equals Latin-1.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr unsigned char upperByte(unsigned char byte) {
  if (byte >= 'a' && byte <= 'z') return static_cast<unsigned char>(byte - 32);
  if (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7) return static_cast<unsigned char>(byte - 32);
  if (byte == 0x9A || byte == 0x9C || byte == 0x9E) return static_cast<unsigned char>(byte - 16);
  if (byte == 0xFF) return 0x9F;
  return byte;
}

constexpr std::array<char, 256> makeTable(bool toUpper) {
  std::array<char, 256> table{};
  for (unsigned byte = 0; byte < 256; ++byte) table.at(byte) = static_cast<char>(byte);
  for (unsigned byte = 0; byte < 256; ++byte) {
    const unsigned char capital = upperByte(static_cast<unsigned char>(byte));
    if (capital == byte) continue;
    if (toUpper) table.at(byte) = static_cast<char>(capital);
    if (!toUpper) table.at(capital) = static_cast<char>(byte);
  }
  return table;
}

constexpr std::array<char, 256> kToUpper = makeTable(true);
constexpr std::array<char, 256> kToLower = makeTable(false);

std::string mapped(std::string_view text, const std::array<char, 256>& table) {
  std::string result(text);
  for (char& character : result) character = table.at(static_cast<unsigned char>(character));
  return result;
}

// "?" for a character that the code page lacks.
char byteOf(char32_t character) {
  if (character < 128 || (character >= 160 && character < 256)) return static_cast<char>(character);
  const auto* const found = std::ranges::find(kUpperControls, character);
  return found == kUpperControls.end() ? '?'
                                       : static_cast<char>(128 + (found - kUpperControls.begin()));
}

// Reads one character at `at` and moves behind it. A byte that begins no character gives U+FFFD.
char32_t nextCharacter(std::string_view utf8, std::size_t& at) {
  const auto lead = static_cast<unsigned char>(utf8[at++]);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 && lead < 0xF5 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 ? 1 : 0;
  if (more == 0 || lead >= 0xF5 || at + static_cast<std::size_t>(more) > utf8.size()) return 0xFFFD;
  char32_t character = lead & (0x3FU >> static_cast<unsigned>(more));
  for (int i = 0; i < more; ++i) {
    const auto byte = static_cast<unsigned char>(utf8[at + static_cast<std::size_t>(i)]);
    if ((byte & 0xC0U) != 0x80U) return 0xFFFD;
    character = (character << 6U) | (byte & 0x3FU);
  }
  at += static_cast<std::size_t>(more);
  return character;
}

}  // namespace

std::string upper(std::string_view text) { return mapped(text, kToUpper); }
std::string lower(std::string_view text) { return mapped(text, kToLower); }
char upper(char character) { return kToUpper.at(static_cast<unsigned char>(character)); }
char lower(char character) { return kToLower.at(static_cast<unsigned char>(character)); }

char16_t unicodeOf(unsigned char byte) {
  return byte >= 128 && byte < 160 ? kUpperControls.at(byte - 128U) : byte;
}

std::string toUtf8(std::string_view text) {
  std::string utf8;
  utf8.reserve(text.size());
  for (const char byte : text) {
    const char16_t character = unicodeOf(static_cast<unsigned char>(byte));
    if (character < 0x80) {
      utf8 += static_cast<char>(character);
    } else if (character < 0x800) {
      utf8 += static_cast<char>(0xC0 | (character >> 6));
      utf8 += static_cast<char>(0x80 | (character & 0x3F));
    } else {
      utf8 += static_cast<char>(0xE0 | (character >> 12));
      utf8 += static_cast<char>(0x80 | ((character >> 6) & 0x3F));
      utf8 += static_cast<char>(0x80 | (character & 0x3F));
    }
  }
  return utf8;
}

std::string fromUtf8(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) text += byteOf(nextCharacter(utf8, at));
  return text;
}

bool isControl(char character) {
  constexpr unsigned char kFirstPrintable = 32;
  const auto byte = static_cast<unsigned char>(character);
  switch (byte) {
    case 127:
    case 129:
    case 141:
    case 143:
    case 144:
    case 157:
      return true;
    default:
      return byte < kFirstPrintable;
  }
}

}  // namespace kelvaron
