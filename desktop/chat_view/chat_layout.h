// How the chat view's lines break into rows on the screen. A line is laid out when it is asked
// for, so the cost is that of the lines on the screen, whatever the length of the text.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "desktop/chat_view/chat_font.h"
#include "platform/styled_text.h"

namespace kelvaron {

/// A row on the screen: row `row` of line `line`, both from 0.
struct ChatRow {
  std::size_t line = 0;
  std::size_t row = 0;
  auto operator<=>(const ChatRow&) const = default;  // NOLINT(modernize-use-nullptr)
};

class ChatLayout {
 public:
  /// Bytes `begin` to `end` of a line, with the blanks that hang over the right edge.
  struct Span {
    std::size_t begin;
    std::size_t end;
  };

  ChatLayout(const StyledText& text, const QFont& font);

  const StyledText& text() const { return text_; }
  const ChatFont& font() const { return font_; }
  void setFont(const QFont& font);
  /// The width that a row may take, in device-independent pixels.
  void setWidth(qreal width);
  /// Must be told of each change of the text.
  void changed(const StyledText::Change& change);

  std::size_t rowCount(std::size_t line) const { return starts(line).size(); }
  Span span(ChatRow row) const;
  /// The row of a place. The place between two rows of a line belongs to the lower one.
  ChatRow rowOf(TextPosition place) const;
  TextPosition startOf(ChatRow row) const { return {row.line, span(row).begin}; }

  /// Where the text of a row begins: the rows of a line behind its first one hang, where they are
  /// wide enough.
  qreal indent(ChatRow row) const { return row.row == 0 ? 0 : indent_; }
  /// From the left edge of the row to the place at `column` of the row's line.
  qreal xOf(ChatRow row, std::size_t column) const;
  /// The place between two characters of the row that is nearest to `x`.
  TextPosition placeAt(ChatRow row, qreal x) const;
  /// The place behind the row's last character that is still in the row.
  TextPosition endOf(ChatRow row) const;
  /// The column of the character drawn over `x`, or that of the row's end if there is none.
  std::size_t characterAt(ChatRow row, qreal x) const;

  /// `count` rows down, or up if negative, but not beyond the text.
  ChatRow moved(ChatRow from, std::ptrdiff_t count) const;
  /// The last one to show: the empty line behind the text's last line end counts for nothing.
  ChatRow lastRow() const;

 private:
  using Starts = std::vector<std::uint32_t>;
  const Starts& starts(std::size_t line) const;
  Starts wrapped(std::size_t line) const;
  void setIndent();

  /// Calls `visit(column, x of its left edge, its advance)` for each byte of a row until the
  /// visitor says stop by returning false.
  template <typename Visit>
  void walk(ChatRow row, Visit visit) const;

  const StyledText& text_;
  ChatFont font_;
  qreal width_ = 0;
  qreal indent_ = 0;
  mutable std::unordered_map<std::size_t, Starts> known_;
};

}  // namespace kelvaron
