#include "desktop/chat_view/chat_selection.h"

#include "desktop/chat_view/chat_font.h"

namespace kelvaron {
namespace {

enum class CharacterKind { blank, word, other };

constexpr CharacterKind kindOf(char byte) {
  if (isBlank(byte)) return CharacterKind::blank;
  const bool letterOrDigit = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= '0' && byte <= '9') || byte == '_' ||
                             static_cast<unsigned char>(byte) >= 0xC0;
  return letterOrDigit ? CharacterKind::word : CharacterKind::other;
}

TextRange unitAt(const StyledText& text, TextPosition place, ChatSelection::Unit unit) {
  switch (unit) {
    case ChatSelection::Unit::word:
      return wordAt(text, place);
    case ChatSelection::Unit::line:
      return {{place.line, 0}, {place.line, text.line(place.line).size()}};
    case ChatSelection::Unit::character:
      break;
  }
  return {place, place};
}

}  // namespace

TextRange wordAt(const StyledText& text, TextPosition place) {
  const std::string_view line = text.line(place.line);
  if (line.empty()) return {place, place};
  const std::size_t column = std::min(place.column, line.size() - 1);
  const CharacterKind kind = kindOf(line[column]);
  std::size_t begin = column;
  while (begin > 0 && kindOf(line[begin - 1]) == kind) --begin;
  std::size_t end = column + 1;
  while (end < line.size() && kindOf(line[end]) == kind) ++end;
  return {{place.line, begin}, {place.line, end}};
}

TextPosition nextWord(const StyledText& text, TextPosition place) {
  const std::string_view line = text.line(place.line);
  if (place.column >= line.size()) {
    return place.line + 1 < text.lineCount() ? TextPosition{place.line + 1, 0} : place;
  }
  std::size_t column = place.column;
  const CharacterKind kind = kindOf(line[column]);
  while (column < line.size() && kindOf(line[column]) == kind) ++column;
  while (column < line.size() && isBlank(line[column])) ++column;
  return {place.line, column};
}

TextPosition previousWord(const StyledText& text, TextPosition place) {
  if (place.column == 0) {
    return place.line > 0 ? TextPosition{place.line - 1, text.line(place.line - 1).size()} : place;
  }
  const std::string_view line = text.line(place.line);
  std::size_t column = std::min(place.column, line.size());
  while (column > 0 && isBlank(line[column - 1])) --column;
  return column == 0 ? TextPosition{place.line, 0} : wordAt(text, {place.line, column - 1}).begin;
}

void ChatSelection::set(TextPosition anchor, TextPosition cursor) {
  anchor_ = anchor;
  cursor_ = cursor;
  origin_ = {anchor, anchor};
  unit_ = Unit::character;
}

void ChatSelection::begin(const StyledText& text, TextPosition place, Unit unit) {
  unit_ = unit;
  origin_ = unitAt(text, place, unit);
  anchor_ = origin_.begin;
  cursor_ = origin_.end;
}

void ChatSelection::extend(const StyledText& text, TextPosition place) {
  const TextRange reached = unitAt(text, place, unit_);
  if (place < origin_.begin) {
    anchor_ = origin_.end;
    cursor_ = reached.begin;
  } else {
    anchor_ = origin_.begin;
    cursor_ = place <= origin_.end ? std::max(place, origin_.end) : reached.end;
  }
}

void ChatSelection::follow(const StyledText::Change& change) {
  const TextPosition insertion{change.first, change.column};
  const TextPosition behind{change.first + change.inserted - 1, change.endColumn};
  const auto bounds = range();
  const bool inFront = !change.cleared && insertion == bounds.begin;
  if (inFront && empty()) {
    set(behind, behind);
    return;
  }
  for (TextPosition* place : {&anchor_, &cursor_, &origin_.begin, &origin_.end}) {
    *place = inFront && *place == insertion ? behind : change.follow(*place);
  }
}

}  // namespace kelvaron
