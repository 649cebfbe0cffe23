#include "desktop/chat_view/chat_layout.h"

#include <algorithm>

namespace kelvaron {
namespace {

/// A few screens full; more is not worth its memory.
constexpr std::size_t kKnownLines = 512;
/// Of a hanging row, in widths of a small letter; and the narrowest row that it is taken from.
constexpr int kIndent = 2;
constexpr int kNarrowest = 20;

}  // namespace

ChatLayout::ChatLayout(const StyledText& text, const QFont& font) : text_(text), font_(font) {}

void ChatLayout::setFont(const QFont& font) {
  font_ = ChatFont(font);
  setIndent();
  known_.clear();
}

void ChatLayout::setWidth(qreal width) {
  if (width != width_) {
    width_ = width;
    setIndent();
    known_.clear();
  }
}

void ChatLayout::setIndent() {
  const qreal letter = font_.advance('n', false);
  indent_ = width_ < kNarrowest * letter ? 0 : kIndent * letter;
}

void ChatLayout::changed(const StyledText::Change& change) {
  if (known_.empty()) return;
  const bool atTheEnd = change.first + change.inserted == text_.lineCount() && !change.cleared;
  if (atTheEnd) {
    known_.erase(change.first);
  } else {
    known_.clear();
  }
}

const ChatLayout::Starts& ChatLayout::starts(std::size_t line) const {
  const auto found = known_.find(line);
  if (found != known_.end()) return found->second;
  if (known_.size() >= kKnownLines) known_.clear();
  return known_.emplace(line, wrapped(line)).first->second;
}

/// Where the rows of a line start. Breaks behind blanks; a word longer than a row is cut where the
/// row is full. Blanks at a row's end take no room.
ChatLayout::Starts ChatLayout::wrapped(std::size_t line) const {
  const std::string_view bytes = text_.line(line);
  Starts result = {0};
  std::size_t wordBegin = 0;
  qreal rowWidth = 0;
  qreal wordWidth = 0;
  qreal room = width_;
  for (std::size_t i = 0; i < text_.runCount(line); ++i) {
    const StyledText::Run run = text_.run(line, i);
    for (std::size_t column = run.begin; column < run.end; ++column) {
      const qreal advance = font_.advance(bytes[column], run.style.bold);
      if (isBlank(bytes[column])) {
        rowWidth += wordWidth + advance;
        wordWidth = 0;
        wordBegin = column + 1;
        continue;
      }
      if (rowWidth + wordWidth + advance > room) {
        if (wordBegin > result.back()) {
          result.push_back(static_cast<std::uint32_t>(wordBegin));
          rowWidth = 0;
          room = width_ - indent_;
        }
        if (wordWidth + advance > room && column > result.back()) {
          result.push_back(static_cast<std::uint32_t>(column));
          wordBegin = column;
          rowWidth = 0;
          wordWidth = 0;
          room = width_ - indent_;
        }
      }
      wordWidth += advance;
    }
  }
  return result;
}

ChatLayout::Span ChatLayout::span(ChatRow row) const {
  const Starts& rows = starts(row.line);
  return {rows[row.row],
          row.row + 1 < rows.size() ? rows[row.row + 1] : text_.line(row.line).size()};
}

ChatRow ChatLayout::rowOf(TextPosition place) const {
  const Starts& rows = starts(place.line);
  const auto behind = std::upper_bound(rows.begin() + 1, rows.end(), place.column);
  return {place.line, static_cast<std::size_t>(behind - rows.begin()) - 1};
}

template <typename Visit>
void ChatLayout::walk(ChatRow row, Visit visit) const {
  const Span within = span(row);
  if (within.begin == within.end) return;
  const std::string_view bytes = text_.line(row.line);
  qreal x = indent(row);
  std::size_t column = within.begin;
  for (std::size_t i = text_.runAt(row.line, column); column < within.end; ++i) {
    const StyledText::Run run = text_.run(row.line, i);
    for (; column < std::min(run.end, within.end); ++column) {
      const qreal advance = font_.advance(bytes[column], run.style.bold);
      if (!visit(column, x, advance)) return;
      x += advance;
    }
  }
}

qreal ChatLayout::xOf(ChatRow row, std::size_t column) const {
  qreal result = indent(row);
  walk(row, [&](std::size_t at, qreal x, qreal advance) {
    if (at >= column) return false;
    result = x + advance;
    return true;
  });
  return result;
}

std::size_t ChatLayout::characterAt(ChatRow row, qreal x) const {
  std::size_t result = span(row).end;
  walk(row, [&](std::size_t at, qreal left, qreal advance) {
    if (x >= left + advance) return true;
    result = at;
    return false;
  });
  return result;
}

TextPosition ChatLayout::placeAt(ChatRow row, qreal x) const {
  TextPosition result = endOf(row);
  walk(row, [&](std::size_t at, qreal left, qreal advance) {
    if (at >= result.column || x >= left + advance / 2) return at < result.column;
    result.column = at;
    return false;
  });
  return result;
}

TextPosition ChatLayout::endOf(ChatRow row) const {
  const Span within = span(row);
  const bool last = row.row + 1 == rowCount(row.line);
  // The place behind a row's last character counts as the start of the row below.
  return {row.line, last ? within.end : std::max(within.begin, within.end - 1)};
}

ChatRow ChatLayout::moved(ChatRow from, std::ptrdiff_t count) const {
  for (; count < 0; ++count) {
    if (from.row > 0) {
      --from.row;
    } else if (from.line > 0) {
      from = {from.line - 1, rowCount(from.line - 1) - 1};
    } else {
      break;
    }
  }
  for (; count > 0; --count) {
    if (from.row + 1 < rowCount(from.line)) {
      ++from.row;
    } else if (from.line + 1 < text_.lineCount()) {
      from = {from.line + 1, 0};
    } else {
      break;
    }
  }
  return from;
}

ChatRow ChatLayout::lastRow() const {
  std::size_t line = text_.lineCount() - 1;
  if (line > 0 && text_.line(line).empty()) --line;
  return {line, rowCount(line) - 1};
}

}  // namespace kelvaron
