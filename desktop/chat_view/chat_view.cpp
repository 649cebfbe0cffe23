#include "desktop/chat_view/chat_view.h"

#include <QAccessible>
#include <QClipboard>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "desktop/chat_view/chat_accessible.h"
#include "desktop/text_conversion.h"

namespace kelvaron {
namespace {

constexpr int kCaretWidth = 1;

/// In a flood, screens show no more than about a hundred pictures a second; what is drawn beyond
/// that only takes time from the arriving lines.
constexpr std::chrono::milliseconds kBetweenRepaints{10};

/// Beyond it only an explicit copy fills a clipboard.
constexpr std::size_t kLargestPrimarySelection = std::size_t{1} << 20U;
/// What a screen reader is told of a burst at most, its end.
constexpr std::size_t kLargestAnnouncement = std::size_t{1} << 14U;

}  // namespace

ChatView::ChatView(StyledText& text, QWidget* parent)
    : QAbstractScrollArea(parent),
      text_(text),
      layout_(text, QGuiApplication::font()),
      notes_(text) {
  installChatAccessibility();
  setFont(QGuiApplication::font());
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_InputMethodEnabled);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
  viewport()->setMouseTracking(true);
  viewport()->setCursor(Qt::IBeamCursor);
  settleTimer_.setSingleShot(true);
  settleTimer_.setTimerType(Qt::PreciseTimer);
  connect(&settleTimer_, &QTimer::timeout, this, &ChatView::settle);
  selection_.set(text_.caret(), text_.caret());
  text_.onChange = [this](const StyledText::Change& change) { textChanged(change); };
  applyFont();
}

ChatView::~ChatView() { text_.onChange = nullptr; }

void ChatView::setBackground(const QColor& color) {
  background_ = color;
  // No groove shows beside the text while there is nothing to scroll.
  QPalette palette = verticalScrollBar()->palette();
  palette.setColor(QPalette::Base, color);
  verticalScrollBar()->setPalette(palette);
  viewport()->update();
}

void ChatView::textChanged(const StyledText::Change& change) {
  layout_.changed(change);
  notes_.changed(change);
  selection_.follow(change);
  const bool newLinesInFront =
      !change.cleared && change.endColumn == 0 && top_ == TextPosition{change.first, change.column};
  top_ =
      newLinesInFront ? TextPosition{change.first + change.inserted - 1, 0} : change.follow(top_);
  if (QAccessible::isActive()) tellInsertion(change);
  if (!settleTimer_.isActive()) {
    const std::chrono::milliseconds since{sinceSettled_.isValid() ? sinceSettled_.elapsed() : 1000};
    settleTimer_.start(std::max(kBetweenRepaints - since, std::chrono::milliseconds{0}));
  }
}

/// What is appended is told once a turn, anything else at once.
void ChatView::tellInsertion(const StyledText::Change& change) {
  if (change.cleared) {
    unspokenFrom_.reset();
    tellCursorMoved(*this);
    return;
  }
  const TextPosition from{change.first, change.column};
  const TextPosition to{change.first + change.inserted - 1, change.endColumn};
  const std::size_t offset = text_.offsetOf(from);
  if (to == text_.end()) {
    unspokenFrom_ = std::min(unspokenFrom_.value_or(offset), offset);
    return;
  }
  const std::string inserted = text_.text(from, to);
  if (unspokenFrom_) *unspokenFrom_ += inserted.size();
  tellTextInserted(*this, offset, inserted);
}

void ChatView::settleIfChanged() {
  if (settleTimer_.isActive()) settle();
}

void ChatView::settle() {
  settleTimer_.stop();
  sinceSettled_.start();
  const ChatRow last = lastPage();
  const bool endIsHeld = following_ && !pressed_;
  if (endIsHeld || top() >= last) {
    top_ = layout_.startOf(last);
    following_ = true;
  }
  standAt(top(), last);
  noteLines();
  if (unspokenFrom_) {
    const std::size_t length = text_.length();
    std::size_t from = std::min(*std::exchange(unspokenFrom_, std::nullopt), length);
    from = std::max(from, length - std::min(length, kLargestAnnouncement));
    tellTextInserted(*this, from, text_.text(text_.positionOf(from), text_.end()));
  }
}

std::size_t ChatView::pageRows() const {
  const int rows = (viewport()->height() - kTopMargin - kBottomMargin) / layout_.font().rowHeight();
  return static_cast<std::size_t>(std::max(1, rows));
}

/// The first row of the view when it stands at the end.
ChatRow ChatView::lastPage() const {
  return layout_.moved(layout_.lastRow(), 1 - static_cast<std::ptrdiff_t>(pageRows()));
}

ChatRow ChatView::topRow() {
  settleIfChanged();
  return top();
}

bool ChatView::atEnd() {
  settleIfChanged();
  return following_;
}

void ChatView::scrollTo(ChatRow row) {
  const ChatRow last = lastPage();
  row = std::min(row, last);
  following_ = row == last;
  top_ = layout_.startOf(row);
  standAt(row, last);
}

/// Shows `row` as the top one, where `last` is the top one at the end. The bar counts lines; where
/// the last page starts within a wrapped line, one more step leads from that line's start to the
/// end. At the end the last row stands at the bottom, elsewhere the top one at the top.
void ChatView::standAt(ChatRow row, ChatRow last) {
  const bool before = std::exchange(scrolling_, true);
  const int most = static_cast<int>(last.line + (last.row > 0 ? 1 : 0));
  const int page = static_cast<int>(pageRows());
  QScrollBar* bar = verticalScrollBar();
  bar->setRange(0, most);
  bar->setPageStep(page);
  bar->setValue(row == last ? most : static_cast<int>(row.line));
  scrolling_ = before;

  const bool full = row == last && last > ChatRow{};
  topY_ =
      full ? viewport()->height() - kBottomMargin - page * layout_.font().rowHeight() : kTopMargin;
  placeNewLines();
  updateHover();
  viewport()->update();
}

void ChatView::scrollContentsBy(int /*dx*/, int /*dy*/) {
  if (scrolling_) return;
  const QScrollBar* bar = verticalScrollBar();
  scrollTo(bar->value() == bar->maximum() ? lastPage()
                                          : ChatRow{static_cast<std::size_t>(bar->value()), 0});
}

void ChatView::scrollRows(std::ptrdiff_t count) { scrollTo(layout_.moved(top(), count)); }

void ChatView::scrollToStart() { scrollTo({}); }

void ChatView::scrollToEnd() { scrollTo(lastPage()); }

void ChatView::reveal(TextPosition place) {
  const ChatRow row = layout_.rowOf(place);
  if (row < top()) {
    scrollTo(row);
    return;
  }
  const ChatRow highest = layout_.moved(row, 1 - static_cast<std::ptrdiff_t>(pageRows()));
  if (highest > top()) scrollTo(highest);
}

void ChatView::showInMiddle(TextPosition place) {
  if (!placeRect(place)) {
    scrollTo(layout_.moved(layout_.rowOf(place), -static_cast<std::ptrdiff_t>(pageRows() / 2)));
  }
}

void ChatView::resizeEvent(QResizeEvent* event) {
  QAbstractScrollArea::resizeEvent(event);
  fitWidth();
}

void ChatView::fitWidth() {
  layout_.setWidth(viewport()->width() - 2 * kMargin);
  placeBars();
  settle();
}

int ChatView::fontSize() const {
  return std::clamp(ownFontSize() + zoom_, kSmallestFont, kLargestFont);
}

int ChatView::ownFontSize() const {
  return static_cast<int>(std::lround(QFontInfo(font()).pointSizeF()));
}

void ChatView::zoomBy(int points) {
  zoom_ = std::clamp(fontSize() + points, kSmallestFont, kLargestFont) - ownFontSize();
  applyFont();
}

void ChatView::resetZoom() {
  zoom_ = 0;
  applyFont();
}

void ChatView::applyFont() {
  QFont shown = font();
  if (zoom_ != 0) shown.setPointSize(fontSize());
  layout_.setFont(shown);
  fitWidth();
}

void ChatView::changeEvent(QEvent* event) {
  QAbstractScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange) applyFont();
  if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
    noteLines();
    notes_.stopReading();
    viewport()->update();
  }
}

void ChatView::paintEvent(QPaintEvent* event) {
  QPainter painter(viewport());
  painter.fillRect(event->rect(), background_);
  const ChatMarks marks{background_, selection()};
  const int step = layout_.font().rowHeight();
  ChatRow row = top();
  int y = topY_;
  for (; y < viewport()->height(); y += step) {
    paintRow(painter, layout_, row, QPointF(kMargin, y), marks);
    paintNotes(painter, row, y);
    const ChatRow next = layout_.moved(row, 1);
    if (next == row) break;
    row = next;
  }
  if (hasFocus()) {
    if (const std::optional<QRect> place = placeRect(cursor())) {
      painter.fillRect(place->x(), place->y(), kCaretWidth, place->height(),
                       background_.lightness() < 128 ? Qt::white : Qt::black);
    }
  }
}

std::optional<ChatRow> ChatView::rowUnder(int y) const {
  ChatRow row = top();
  if (y < topY_) return row;
  for (int below = topY_ + layout_.font().rowHeight(); below <= y;
       below += layout_.font().rowHeight()) {
    const ChatRow next = layout_.moved(row, 1);
    if (next == row) return std::nullopt;
    row = next;
  }
  return row;
}

TextPosition ChatView::placeAt(QPoint point) const {
  return layout_.placeAt(rowUnder(point.y()).value_or(layout_.lastRow()), point.x() - kMargin);
}

std::optional<QRect> ChatView::placeRect(TextPosition place) const {
  // The place behind the last line end shows at the end of that line.
  const ChatRow row = std::min(layout_.rowOf(place), layout_.lastRow());
  if (row.line < place.line) place = {row.line, text_.line(row.line).size()};
  const int height = layout_.font().rowHeight();
  ChatRow shown = top();
  for (int y = topY_; y + height <= viewport()->height(); y += height) {
    if (shown == row) {
      const qreal left = layout_.xOf(row, place.column);
      const qreal right = place < layout_.endOf(row) ? layout_.xOf(row, place.column + 1)
                                                     : left + layout_.font().advance(' ', false);
      return QRectF(kMargin + left, y, right - left, height).toRect();
    }
    shown = layout_.moved(shown, 1);
  }
  return std::nullopt;
}

QRect ChatView::characterRect(TextPosition place) {
  settleIfChanged();
  return placeRect(place).value_or(QRect());
}

void ChatView::setSelection(const ChatSelection& selection) {
  const bool moved =
      selection.cursor() != selection_.cursor() || selection.anchor() != selection_.anchor();
  selection_ = selection;
  goalX_.reset();
  text_.setCaret(selection_.cursor());
  if (moved) {
    viewport()->update();
    tellCursorMoved(*this);
  }
}

void ChatView::select(TextPosition anchor, TextPosition cursor) {
  ChatSelection selection;
  selection.set(text_.positionOf(text_.offsetOf(anchor)), text_.positionOf(text_.offsetOf(cursor)));
  setSelection(selection);
}

void ChatView::selectAll() { select({}, text_.end()); }

std::string ChatView::selectedText() const {
  return text_.text(selection().begin, selection().end, "\n");
}

void ChatView::copy() const {
  if (!selection_.empty()) QGuiApplication::clipboard()->setText(shownText(selectedText()));
}

/// On systems where selecting alone offers text for pasting with the middle button.
void ChatView::offerPrimarySelection() const {
  QClipboard* clipboard = QGuiApplication::clipboard();
  if (!clipboard->supportsSelection() || selection_.empty() ||
      text_.offsetOf(selection().end) - text_.offsetOf(selection().begin) >
          kLargestPrimarySelection) {
    return;
  }
  clipboard->setText(shownText(selectedText()), QClipboard::Selection);
}

}  // namespace kelvaron
