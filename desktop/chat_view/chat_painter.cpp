#include "desktop/chat_view/chat_painter.h"

#include <QColor>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

/// One look for all selected text, since its own colours may be of any kind: white on this blue
/// has a contrast of 6.4 to 1, and the blue stands out from black and from white.
const QColor kSelectedBackground(0x2F, 0x5F, 0xB3);
const QColor kSelectedText(Qt::white);

/// The part of a range that lies in a line, as columns; `end` may be one more than the line's
/// length, for a line end that is in the range.
LinkSpan columnsIn(const TextRange& range, std::size_t line, std::size_t length) {
  if (range.empty() || line < range.begin.line || line > range.end.line) return {0, 0};
  return {line == range.begin.line ? range.begin.column : 0,
          line == range.end.line ? range.end.column : length + 1};
}

/// Text in the colour of its ground, or next to it, is drawn in grey: its colour in force stays.
QColor readable(const QColor& text, const QColor& ground) {
  constexpr int kTooClose = 24;
  const auto close = [](int a, int b) { return std::abs(a - b) <= kTooClose; };
  const bool hidden = close(text.red(), ground.red()) && close(text.green(), ground.green()) &&
                      close(text.blue(), ground.blue());
  return hidden ? QColor(Qt::gray) : text;
}

constexpr std::size_t kLinkedLine = std::size_t{16} << 10U;

bool covers(const LinkSpan& span, std::size_t column) {
  return span.begin <= column && column < span.end;
}

}  // namespace

void paintRow(QPainter& painter, const ChatLayout& layout, ChatRow row, QPointF topLeft,
              const ChatMarks& marks) {
  const StyledText& text = layout.text();
  const ChatFont& font = layout.font();
  const std::string_view bytes = text.line(row.line);
  const ChatLayout::Span span = layout.span(row);
  const LinkSpan selected = columnsIn(marks.selection, row.line, bytes.size());
  // Of a line beyond any link's length the cost of looking for them is not worth its while.
  const std::vector<LinkSpan> links =
      bytes.size() <= kLinkedLine ? findLinks(bytes) : std::vector<LinkSpan>();
  std::vector<std::size_t> cuts = {selected.begin, selected.end};
  for (const LinkSpan& link : links) cuts.insert(cuts.end(), {link.begin, link.end});

  QPointF place = topLeft + QPointF(layout.indent(row), 0);
  std::size_t column = span.begin;
  std::size_t runIndex = column < span.end ? text.runAt(row.line, column) : 0;
  while (column < span.end) {
    const StyledText::Run run = text.run(row.line, runIndex);
    std::size_t end = std::min(run.end, span.end);
    for (const std::size_t cut : cuts) {
      if (column < cut && cut < end) end = cut;
    }
    const std::string_view piece = bytes.substr(column, end - column);
    const bool bold = run.style.bold;
    const qreal width = font.width(piece, bold);
    QColor pen = readable(toQt(run.style.color), marks.ground);
    if (covers(selected, column)) {
      painter.fillRect(QRectF(place, QSizeF(width, font.rowHeight())), kSelectedBackground);
      pen = kSelectedText;
    }
    painter.setPen(pen);
    const QPointF onBaseline = place + QPointF(0, font.baseline());
    font.draw(painter, onBaseline, piece, bold);
    if (std::ranges::any_of(links, [&](const LinkSpan& link) { return covers(link, column); })) {
      painter.fillRect(QRectF(onBaseline + QPointF(0, 1), QSizeF(width, 1)), pen);
    }
    place.rx() += width;
    column = end;
    runIndex += column == run.end ? 1U : 0U;
  }
  if (span.end == bytes.size() && covers(selected, bytes.size())) {
    const QSizeF lineEnd(font.advance(' ', false), font.rowHeight());
    painter.fillRect(QRectF(place, lineEnd), kSelectedBackground);
  }
}

}  // namespace kelvaron
