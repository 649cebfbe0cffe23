// An entry of the user list: a nickname, at times with a tag directly behind it.
#pragma once

#include <string_view>

namespace kelvaron {

/// All tags have this many characters.
inline constexpr std::size_t kTagLength = 4;
inline constexpr std::string_view kInGameTag = "[IG]";
inline constexpr std::string_view kHostsCsTag = "[CS]";
inline constexpr std::string_view kAwayTag = "[AW]";

/// Whether the last four characters of the entry are the tag.
constexpr bool hasTag(std::string_view entry, std::string_view tag) { return entry.ends_with(tag); }

/// The entry without its tag.
constexpr std::string_view nicknameOf(std::string_view entry) {
  const bool tagged =
      hasTag(entry, kInGameTag) || hasTag(entry, kHostsCsTag) || hasTag(entry, kAwayTag);
  return tagged ? entry.substr(0, entry.size() - kTagLength) : entry;
}

}  // namespace kelvaron
