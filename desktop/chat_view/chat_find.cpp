#include "desktop/chat_view/chat_find.h"

#include <numeric>

#include "base/code_page.h"

namespace kelvaron {
namespace {

/// All bytes in lower case.
const std::string& lowerCaseTable() {
  static const std::string kTable = [] {
    std::string all(256, '\0');
    std::iota(all.begin(), all.end(), '\0');
    return lower(all);
  }();
  return kTable;
}

constexpr std::size_t kNowhere = std::string_view::npos;

/// The last match in a line that starts before `before`.
std::size_t findLastIn(std::string_view bytes, const ChatNeedle& needle, std::size_t before) {
  std::size_t last = kNowhere;
  for (std::size_t at = needle.findIn(bytes); at < before; at = needle.findIn(bytes, at + 1)) {
    last = at;
  }
  return last;
}

}  // namespace

// Horspool's way: compare at the window's place, then jump by what its last byte allows.
ChatNeedle::ChatNeedle(std::string_view wanted) : wanted_(lower(wanted)) {
  skip_.fill(wanted_.size());
  for (std::size_t i = 0; i + 1 < wanted_.size(); ++i) {
    skip_[static_cast<unsigned char>(wanted_[i])] = wanted_.size() - 1 - i;
  }
}

std::size_t ChatNeedle::findIn(std::string_view bytes, std::size_t from) const {
  const std::size_t length = wanted_.size();
  if (length == 0) return kNowhere;
  const char* table = lowerCaseTable().data();
  const auto inLowerCase = [&](std::size_t at) {
    return table[static_cast<unsigned char>(bytes[at])];
  };
  while (from + length <= bytes.size()) {
    std::size_t i = length;
    while (i > 0 && inLowerCase(from + i - 1) == wanted_[i - 1]) --i;
    if (i == 0) return from;
    from += skip_[static_cast<unsigned char>(inLowerCase(from + length - 1))];
  }
  return kNowhere;
}

std::optional<TextPosition> findForward(const StyledText& text, const ChatNeedle& needle,
                                        TextPosition from) {
  std::size_t line = from.line;
  std::size_t column = needle.findIn(text.line(line), from.column);
  // The line of the start comes twice: behind it first, in front of it at the end.
  for (std::size_t left = text.lineCount(); column == kNowhere && left > 0; --left) {
    line = line + 1 < text.lineCount() ? line + 1 : 0;
    column = needle.findIn(text.line(line));
  }
  return column == kNowhere ? std::nullopt : std::optional(TextPosition{line, column});
}

std::optional<TextPosition> findBackward(const StyledText& text, const ChatNeedle& needle,
                                         TextPosition before) {
  std::size_t line = before.line;
  std::size_t column = findLastIn(text.line(line), needle, before.column);
  for (std::size_t left = text.lineCount(); column == kNowhere && left > 0; --left) {
    line = line > 0 ? line - 1 : text.lineCount() - 1;
    column = findLastIn(text.line(line), needle, kNowhere);
  }
  return column == kNowhere ? std::nullopt : std::optional(TextPosition{line, column});
}

}  // namespace kelvaron
