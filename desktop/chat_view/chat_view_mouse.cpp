// The chat view's mouse, wheel and context menu.
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleHints>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "desktop/chat_view/chat_view.h"
#include "desktop/text_conversion.h"

namespace kelvaron {
namespace {

constexpr int kNotch = 120;  // of a wheel, in eighths of a degree
constexpr int kDragScrollMs = 40;

}  // namespace

void ChatView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint point = event->position().toPoint();
  const TextPosition place = placeAt(point);
  const bool thirdClick =
      sinceDoubleClick_.isValid() &&
      sinceDoubleClick_.elapsed() < QGuiApplication::styleHints()->mouseDoubleClickInterval() &&
      (point - doubleClickPoint_).manhattanLength() < QApplication::startDragDistance();
  pressed_ = true;
  clickStart_.reset();
  ChatSelection selection = selection_;
  if (event->modifiers().testFlag(Qt::ShiftModifier)) {
    selection.extend(text_, place);
  } else if (thirdClick) {
    selection.begin(text_, place, ChatSelection::Unit::line);
  } else {
    selection.begin(text_, place, ChatSelection::Unit::character);
    if (linkUnder(point)) clickStart_ = point;
  }
  sinceDoubleClick_.invalidate();
  setSelection(selection);
}

void ChatView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  pressed_ = true;
  clickStart_.reset();
  doubleClickPoint_ = event->position().toPoint();
  sinceDoubleClick_.start();
  const QPoint point = doubleClickPoint_;
  // The word of the character under the pointer, not of the nearest place between two.
  const ChatRow row = rowUnder(point.y()).value_or(layout_.lastRow());
  const TextPosition place{row.line, layout_.characterAt(row, point.x() - kMargin)};
  ChatSelection selection = selection_;
  selection.begin(text_, place, ChatSelection::Unit::word);
  setSelection(selection);
}

void ChatView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint point = event->position().toPoint();
  pointer_ = point;
  if (!pressed_ || !event->buttons().testFlag(Qt::LeftButton)) {
    updateHover();
    return;
  }
  if (clickStart_ && (point - *clickStart_).manhattanLength() < QApplication::startDragDistance()) {
    return;
  }
  clickStart_.reset();
  dragTo(point);
}

void ChatView::dragTo(QPoint point) {
  dragPoint_ = point;
  ChatSelection selection = selection_;
  selection.extend(text_, placeAt(point));
  setSelection(selection);
  const bool beyond = point.y() < 0 || point.y() >= viewport()->height();
  if (!beyond) {
    dragScroll_.stop();
  } else if (!dragScroll_.isActive()) {
    dragScroll_.start(kDragScrollMs, this);
  }
}

void ChatView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != dragScroll_.timerId()) {
    QAbstractScrollArea::timerEvent(event);
    return;
  }
  // The farther beyond the edge, the faster.
  const int height = layout_.font().rowHeight();
  const int below = dragPoint_.y() - viewport()->height();
  scrollRows(dragPoint_.y() < 0 ? dragPoint_.y() / height - 1 : below / height + 1);
  dragTo(dragPoint_);
}

void ChatView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !pressed_) return;
  pressed_ = false;
  dragScroll_.stop();
  offerPrimarySelection();
  std::optional<QUrl> url;
  if (std::exchange(clickStart_, std::nullopt)) {
    if (const std::optional<ChatLink> link = linkUnder(event->position().toPoint())) {
      const LinkSpan span = link->span;
      url = urlOf(text_.line(link->line).substr(span.begin, span.end - span.begin));
    }
  }
  settle();
  if (url) Q_EMIT linkActivated(*url);
}

bool ChatView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::Leave) {
    pointer_.reset();
    updateHover();
  }
  if (event->type() == QEvent::ToolTip) return showTime(static_cast<const QHelpEvent&>(*event));
  return QAbstractScrollArea::viewportEvent(event);
}

std::optional<ChatLink> ChatView::linkUnder(QPoint point) const {
  const std::optional<ChatRow> row = rowUnder(point.y());
  const qreal x = point.x() - kMargin;
  if (!row || x < 0) return std::nullopt;
  const std::size_t column = layout_.characterAt(*row, x);
  if (column >= layout_.span(*row).end) return std::nullopt;
  const std::optional<LinkSpan> span = linkAt(text_.line(row->line), column);
  return span ? std::optional(ChatLink{row->line, *span}) : std::nullopt;
}

void ChatView::updateHover() {
  const std::optional<ChatLink> link = pointer_ && !pressed_ ? linkUnder(*pointer_) : std::nullopt;
  if (link != hovered_) {
    hovered_ = link;
    viewport()->setCursor(link ? Qt::PointingHandCursor : Qt::IBeamCursor);
  }
}

void ChatView::wheelEvent(QWheelEvent* event) {
  event->accept();
  const int delta = event->angleDelta().y();
  const bool zooming = event->modifiers().testFlag(Qt::ControlModifier);
  if ((delta > 0) != (wheelRest_ > 0)) wheelRest_ = 0;
  wheelRest_ += zooming ? delta : delta * QApplication::wheelScrollLines();
  const int steps = wheelRest_ / kNotch;
  wheelRest_ %= kNotch;
  if (steps == 0) return;
  if (zooming) {
    zoomBy(steps);
  } else {
    scrollRows(-steps);
  }
}

void ChatView::contextMenuEvent(QContextMenuEvent* event) {
  QPoint point = viewport()->mapFromGlobal(event->globalPos());
  QPoint shownAt = event->globalPos();
  if (event->reason() == QContextMenuEvent::Keyboard) {
    point = placeRect(cursor()).value_or(QRect()).bottomLeft();
    shownAt = viewport()->mapToGlobal(point);
  }
  QMenu* menu = makeContextMenu(point).release();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  menu->popup(shownAt);
}

std::unique_ptr<QMenu> ChatView::makeContextMenu(QPoint point) {
  auto menu = std::make_unique<QMenu>(this);
  if (const std::optional<ChatLink> link = linkUnder(point)) {
    const LinkSpan span = link->span;
    const std::string address{text_.line(link->line).substr(span.begin, span.end - span.begin)};
    menu->addAction(tr("&Open Link"), this,
                    [this, url = urlOf(address).value_or(QUrl())] { Q_EMIT linkActivated(url); });
    menu->addAction(tr("Copy &Link"), this,
                    [address] { QGuiApplication::clipboard()->setText(shownText(address)); });
    menu->addSeparator();
  }
  QAction* copyAction = menu->addAction(tr("&Copy"), QKeySequence::Copy, this, &ChatView::copy);
  copyAction->setEnabled(!selection_.empty());
  menu->addAction(tr("Select &All"), QKeySequence::SelectAll, this, &ChatView::selectAll);
  menu->addSeparator();
  menu->addAction(tr("&Find..."), QKeySequence::Find, this, &ChatView::openFindBar);
  menu->addSeparator();
  menu->addAction(tr("Zoom &In"), QKeySequence::ZoomIn, this, [this] { zoomBy(1); });
  menu->addAction(tr("Zoom Ou&t"), QKeySequence::ZoomOut, this, [this] { zoomBy(-1); });
  menu->addAction(tr("&Normal Size"), QKeySequence(Qt::CTRL | Qt::Key_0), this,
                  &ChatView::resetZoom);
  return menu;
}

}  // namespace kelvaron
