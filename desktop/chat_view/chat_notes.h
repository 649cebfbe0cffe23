// What the chat view remembers of lines besides their text: when they came, which of them are for
// the user, and where reading stopped.
#pragma once

#include <cstddef>
#include <ctime>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/styled_text.h"

namespace kelvaron {

class ChatNotes {
 public:
  explicit ChatNotes(const StyledText& text) : text_(text) {}

  /// Tells whether a line is for the user; each is asked about once.
  std::function<bool(std::string_view line)> isForUser;

  /// Must be told of each change of the text.
  void changed(const StyledText::Change& change);
  /// Looks at the lines that have come since the last call, as of `now`. Whether one of them is for
  /// the user.
  bool settle(std::time_t now);

  /// Lines that are whole.
  std::size_t wholeLines() const { return text_.lineCount() - 1; }
  bool isMarked(std::size_t line) const;
  /// When a line came, to the minute; none for one that isn't whole.
  std::optional<std::time_t> cameAt(std::size_t line) const;

  /// The user stops reading here, behind the last line.
  void stopReading() { readTo_ = wholeLines(); }
  /// The first line that wasn't read when reading stopped.
  std::optional<std::size_t> readTo() const { return readTo_; }

 private:
  struct Arrival {
    std::size_t line;  // the first that came in that minute
    std::time_t minute;
  };

  const StyledText& text_;
  std::size_t seen_ = 0;             // lines that were looked at
  std::vector<std::size_t> marked_;  // rising
  std::vector<Arrival> arrivals_;    // rising
  std::optional<std::size_t> readTo_;
};

}  // namespace kelvaron
