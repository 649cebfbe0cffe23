// Cleaning and the shape of nicknames and sound names.
#include "server/text.h"

#include <algorithm>
#include <array>

#include "base/code_page.h"

namespace kelvaron::server {
namespace {

constexpr std::size_t kSoundLimit = 64;
constexpr std::size_t kLoggedLimit = 64;
constexpr std::array<std::string_view, 3> kTags = {"[IG]", "[CS]", "[AW]"};

bool isMark(char c) {
  constexpr std::string_view kWithoutCase = "0123456789\xDF\x83";  // the two are letters
  return lower(std::string_view(&c, 1)) == upper(std::string_view(&c, 1)) &&
         kWithoutCase.find(c) == std::string_view::npos;
}

}  // namespace

std::string fold(std::string_view text) { return upper(text); }

std::string likeness(std::string_view nick) {
  const auto first = std::find_if_not(nick.begin(), nick.end(), isMark);
  if (first == nick.end()) return std::string(nick);
  const auto last = std::find_if_not(nick.rbegin(), nick.rend(), isMark);
  return upper(std::string_view(first, last.base()));
}

std::optional<std::string> fromConsole(std::string_view utf8) {
  std::string text = fromUtf8(utf8);
  if (toUtf8(text) != utf8) return std::nullopt;
  return text;
}

bool isUtf8(std::string_view text) {
  const auto byteAt = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  bool beyondAscii = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (byteAt(at) < 0x80) continue;
    beyondAscii = true;
    const std::size_t last = at + (byteAt(at) >= 0xF0 ? 3 : byteAt(at) >= 0xE0 ? 2 : 1);
    if (byteAt(at) < 0xC2 || last >= text.size()) return false;
    while (at < last) {
      if ((byteAt(++at) & 0xC0U) != 0x80U) return false;
    }
  }
  return beyondAscii;
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

std::string inBrackets(std::string_view reason) {
  return reason.empty() ? std::string() : " (" + std::string(reason) + ")";
}

std::string forLog(std::string_view told) { return toUtf8(cleaned(told.substr(0, kLoggedLimit))); }

bool isSafeSound(std::string_view name) {
  return !name.empty() && name.size() <= kSoundLimit &&
         name.find_first_of("./\\:*?\"<>|") == std::string_view::npos &&
         std::none_of(name.begin(), name.end(), isControl);
}

}  // namespace kelvaron::server
