// Finding words without regard to case, fast enough for a million lines at each key that is typed.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "platform/styled_text.h"

namespace kelvaron {

/// The first place at or behind `from` where `wanted` stands in the bytes, or npos; nothing is
/// found nowhere. Code page 1252.
std::size_t findCaseless(std::string_view bytes, std::string_view wanted, std::size_t from = 0);

/// The first match that starts at or behind `from`; matches lie within one line. Goes on from the
/// start of the text where there is none up to its end.
std::optional<TextPosition> findForward(const StyledText& text, std::string_view wanted,
                                        TextPosition from);
/// The last match that starts before `before`; goes on from the end of the text.
std::optional<TextPosition> findBackward(const StyledText& text, std::string_view wanted,
                                         TextPosition before);

/// How many matches there are, and how many of them lie in front of `at`.
struct MatchCount {
  std::size_t before = 0;
  std::size_t all = 0;
};
MatchCount countMatches(const StyledText& text, std::string_view wanted, TextPosition at);

}  // namespace kelvaron
