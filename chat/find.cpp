#include "chat/find.h"

#include <algorithm>

#include "base/code_page.h"

namespace kelvaron {
namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

bool sameLetter(char one, char other) { return upper(one) == upper(other); }

/// The last match in a line that starts before `before`.
std::size_t findLastIn(std::string_view bytes, std::string_view wanted, std::size_t before) {
  std::size_t last = kNowhere;
  for (std::size_t at = findCaseless(bytes, wanted); at < before;
       at = findCaseless(bytes, wanted, at + 1)) {
    last = at;
  }
  return last;
}

}  // namespace

std::size_t findCaseless(std::string_view bytes, std::string_view wanted, std::size_t from) {
  if (wanted.empty() || bytes.size() < wanted.size()) return kNowhere;
  const std::size_t last = bytes.size() - wanted.size();
  // The library looks for one byte many at a time.
  const char small = lower(wanted.front());
  const char capital = upper(wanted.front());
  std::size_t nextSmall = bytes.find(small, from);
  std::size_t nextCapital = bytes.find(capital, from);
  while (true) {
    const std::size_t at = std::min(nextSmall, nextCapital);
    if (at > last) return kNowhere;
    if (std::equal(wanted.begin(), wanted.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                   sameLetter)) {
      return at;
    }
    if (at == nextSmall) nextSmall = bytes.find(small, at + 1);
    if (at == nextCapital) nextCapital = bytes.find(capital, at + 1);
  }
}

std::optional<TextPosition> findForward(const StyledText& text, std::string_view wanted,
                                        TextPosition from) {
  std::size_t line = from.line;
  std::size_t column = findCaseless(text.line(line), wanted, from.column);
  // The line of the start comes twice: behind it first, in front of it at the end.
  for (std::size_t left = text.lineCount(); column == kNowhere && left > 0; --left) {
    line = line + 1 < text.lineCount() ? line + 1 : 0;
    column = findCaseless(text.line(line), wanted);
  }
  return column == kNowhere ? std::nullopt : std::optional(TextPosition{line, column});
}

std::optional<TextPosition> findBackward(const StyledText& text, std::string_view wanted,
                                         TextPosition before) {
  std::size_t line = before.line;
  std::size_t column = findLastIn(text.line(line), wanted, before.column);
  for (std::size_t left = text.lineCount(); column == kNowhere && left > 0; --left) {
    line = line > 0 ? line - 1 : text.lineCount() - 1;
    column = findLastIn(text.line(line), wanted, kNowhere);
  }
  return column == kNowhere ? std::nullopt : std::optional(TextPosition{line, column});
}

MatchCount countMatches(const StyledText& text, std::string_view wanted, TextPosition at) {
  MatchCount count;
  for (std::size_t line = 0; line < text.lineCount(); ++line) {
    const std::string_view bytes = text.line(line);
    for (std::size_t column = findCaseless(bytes, wanted); column != kNowhere;
         column = findCaseless(bytes, wanted, column + 1)) {
      count.before += TextPosition{line, column} < at ? 1U : 0U;
      ++count.all;
    }
  }
  return count;
}

}  // namespace kelvaron
