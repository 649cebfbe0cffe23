// The text of a chat view: lines of bytes with runs of colour and bold, written at a caret.
//
// Made for one workload: a million lines appended at the end, read a screenful at a time. A line
// costs its bytes, 16 bytes, and 8 bytes per run; an append costs the same at any length. An
// insertion in the middle is allowed to cost a pass over the line table.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/non_copyable.h"
#include "platform/byte_chunks.h"
#include "platform/color.h"

namespace kelvaron {

/// A place between two characters: `column` bytes into line `line`, both from 0.
struct TextPosition {
  std::size_t line = 0;
  std::size_t column = 0;
  auto operator<=>(const TextPosition&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// How characters look.
struct TextStyle {
  Color color;
  bool bold = false;
  bool operator==(const TextStyle&) const = default;
};

class StyledText : NonCopyable {
 public:
  /// Bytes of a line that are appended; what would make it longer begins another one, so that a
  /// line without an end costs no more than others.
  static constexpr std::size_t kSplitLine = std::size_t{256} << 10U;

  /// Part of a line in one style, from `begin` up to `end`, in bytes from the line's start.
  struct Run {
    std::size_t begin;
    std::size_t end;
    TextStyle style;
  };

  /// What changed, told after the change. Lines `first` to `first + removed - 1` of before are now
  /// lines `first` to `first + inserted - 1`; lines behind them kept their content.
  struct Change {
    std::size_t first;
    std::size_t removed;
    std::size_t inserted;
    /// Bytes of line `first` in front of the change, and where the new text ends in the last of
    /// the inserted lines.
    std::size_t column;
    std::size_t endColumn;
    /// All text is gone, by `clear()`.
    bool cleared = false;

    /// Where a place of before is now: it stays with its text. A place at the very point of the
    /// insertion stays in front of it; one in text that is gone is where that text was.
    TextPosition follow(TextPosition before) const;
  };

  StyledText();

  /// Never less than 1: the last line is the one still open, empty after a line end.
  std::size_t lineCount() const;
  /// The bytes of a line without its end (code page 1252). Valid until the next change. Here and
  /// below, `index` is less than `lineCount()`.
  std::string_view line(std::size_t index) const;
  /// The runs of a line in order; together they cover the line. Empty for an empty line.
  std::size_t runCount(std::size_t index) const;
  Run run(std::size_t index, std::size_t runIndex) const;
  /// The index of the run that covers the byte at `column`, which the line has.
  std::size_t runAt(std::size_t index, std::size_t column) const;

  /// All lines joined by CR LF.
  std::string text() const;
  /// Number of bytes of `text()`, at constant cost.
  std::size_t length() const;
  /// The bytes from one place to another, lines joined by `lineEnd`. Places beyond the text count
  /// as its end; a range turned round is empty.
  std::string text(TextPosition from, TextPosition to, std::string_view lineEnd = "\r\n") const;

  /// From a place to the number of bytes of `text()` in front of it and back, without a pass over
  /// the text. A place or an offset beyond the text counts as its end, a column beyond its line as
  /// the line's end; so does the offset between CR and LF.
  std::size_t offsetOf(TextPosition position) const;
  TextPosition positionOf(std::size_t offset) const;

  /// Behind the last character.
  TextPosition end() const;
  TextPosition caret() const { return caret_; }

  /// Moves the caret; a place beyond the text counts as its end, a column beyond its line as the
  /// line's end. At the end the style is the one that was left in force there; elsewhere it is that
  /// of the character before the caret (of the one behind it at a line's start; in an empty line,
  /// of the last character in the lines before it).
  void setCaret(TextPosition position);
  void caretToEnd() { setCaret(end()); }

  /// The style that applies to what is inserted next. Set at the end, it stays in force there
  /// while the caret is elsewhere.
  TextStyle style() const { return style_; }
  void setColor(Color color);
  void setBold(bool bold);

  /// Inserts at the caret in the style in force and leaves the caret behind it. CR LF, CR and LF
  /// each end a line. An insertion in the middle leaves the style in force at the end alone.
  /// Where the text is given in pieces, a CR at the end of one and an LF at the start of the next
  /// count as two line ends. A line that would pass 2^31 bytes throws std::length_error and
  /// changes nothing.
  void insert(std::string_view text);

  /// Removes all lines; the style in force at the end stays.
  void clear();

  /// Bytes of memory that the text and its tables hold, without the allocator's own overhead.
  std::size_t memoryUsed() const;

  /// The one observer, told after each change of the text.
  std::function<void(const Change&)> onChange;

 private:
  struct Line {
    ByteChunks::Piece bytes;
    std::uint32_t firstRun = 0;  // its runs end where those of the next line begin

    std::size_t length() const { return bytes.length; }
  };
  struct StoredRun {
    std::uint32_t begin = 0;
    TextStyle style;
  };
  static_assert(sizeof(Line) == 16 && sizeof(StoredRun) == 8);

  TextPosition clamped(TextPosition position) const;
  TextStyle styleAt(TextPosition position) const;
  std::size_t endOfRuns(std::size_t index) const;
  std::size_t lineOffset(std::size_t index) const;

  void append(std::string_view text);
  void appendPiece(std::string_view piece);
  void startLine();
  void insertInside(std::string_view text);
  void replaceLine(std::size_t index, const std::vector<Line>& lines,
                   const std::vector<StoredRun>& runs);
  void compactWhenWasteful();

  ByteChunks chunks_;
  std::deque<Line> lines_;
  std::deque<StoredRun> runs_;
  std::vector<std::size_t> offsets_;  // of every kLinesPerOffset-th line in text()
  std::size_t contentBytes_ = 0;      // of all lines, without line ends
  TextPosition caret_;
  TextStyle style_;
  TextStyle styleAtEnd_;
};

}  // namespace kelvaron
