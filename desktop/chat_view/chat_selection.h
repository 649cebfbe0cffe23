// What is selected in the chat view: from where it was begun (the anchor) to where the user is
// (the cursor), by characters, words or lines.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "platform/styled_text.h"

namespace kelvaron {

/// A range of the text, its beginning not behind its end.
struct TextRange {
  TextPosition begin;
  TextPosition end;
  bool operator==(const TextRange&) const = default;
  bool empty() const { return begin == end; }
};

/// The word, the blanks or the other characters around the byte at `column`; at the line's end
/// those in front of it.
TextRange wordAt(const StyledText& text, TextPosition place);
/// From a place to the start of the next word or of this one (of the one before if it is there),
/// over line ends too.
TextPosition nextWord(const StyledText& text, TextPosition place);
TextPosition previousWord(const StyledText& text, TextPosition place);

class ChatSelection {
 public:
  enum class Unit { character, word, line };

  TextPosition anchor() const { return anchor_; }
  TextPosition cursor() const { return cursor_; }
  bool empty() const { return anchor_ == cursor_; }
  TextRange range() const { return {std::min(anchor_, cursor_), std::max(anchor_, cursor_)}; }

  void set(TextPosition anchor, TextPosition cursor);
  /// Selects the unit around a place; `extend` goes on by whole units.
  void begin(const StyledText& text, TextPosition place, Unit unit);
  /// From the unit that it was begun with to that around `place`.
  void extend(const StyledText& text, TextPosition place);

  /// Keeps the same text selected through a change. What is inserted right in front of it, or at
  /// a bare cursor, is not selected.
  void follow(const StyledText::Change& change);

 private:
  TextPosition anchor_;
  TextPosition cursor_;
  TextRange origin_;
  Unit unit_ = Unit::character;
};

}  // namespace kelvaron
