// Completing what is typed in the room's line of input.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvaron {

/// Completes the beginning of a nickname, or of a command at the start of the line, and goes on to
/// the next that begins so.
class Completion {
 public:
  struct Line {
    std::string text;
    std::size_t caret = 0;
    bool operator==(const Line&) const = default;
  };

  /// The line with the word in front of the caret completed: ": " behind a name at the start, a
  /// blank behind a command and a name elsewhere, nothing behind a name that a command is about.
  /// For the line that it gave last it gives the next name. None when no name begins so, without
  /// regard to case.
  std::optional<Line> next(const Line& line, const std::vector<std::string_view>& nicks,
                           const std::vector<std::string_view>& commands);

 private:
  std::optional<Line> given_;
  std::size_t begin_ = 0;
  std::string typed_;
  std::string behind_;
  std::size_t index_ = 0;
};

}  // namespace kelvaron
