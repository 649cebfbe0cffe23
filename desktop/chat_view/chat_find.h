// Finding words in the chat view's text without regard to case, fast enough for a million lines
// at each key that is typed.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/styled_text.h"

namespace kelvaron {

class ChatNeedle {
 public:
  /// A needle of no bytes is found nowhere.
  explicit ChatNeedle(std::string_view wanted);

  std::size_t size() const { return wanted_.size(); }
  /// The first place at or behind `from` in the bytes, or npos.
  std::size_t findIn(std::string_view bytes, std::size_t from = 0) const;

 private:
  std::string wanted_;
  std::array<std::size_t, 256> skip_{};  // how far a wrong last byte lets the search jump
};

/// The first match that starts at or behind `from`; matches lie within one line. Goes on from the
/// start of the text where there is none up to its end.
std::optional<TextPosition> findForward(const StyledText& text, const ChatNeedle& needle,
                                        TextPosition from);
/// The last match that starts before `before`; goes on from the end of the text.
std::optional<TextPosition> findBackward(const StyledText& text, const ChatNeedle& needle,
                                         TextPosition before);

}  // namespace kelvaron
