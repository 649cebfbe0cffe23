// What the chat view shows of its notes: marks at its edge, how many lines have come below, when a
// line came.
#include <QDateTime>
#include <QHelpEvent>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QToolTip>
#include <ctime>
#include <utility>

#include "desktop/chat_view/chat_view.h"

namespace kelvaron {
namespace {

constexpr int kMarkWidth = 3;
constexpr int kAboveEdge = 8;

}  // namespace

void ChatView::setForUser(std::function<bool(std::string_view line)> isForUser) {
  notes_.isForUser = std::move(isForUser);
}

void ChatView::noteLines() {
  if (notes_.settle(std::time(nullptr))) Q_EMIT addressed();
  placeNewLines();
}

/// The button is made when the first lines come below what shows.
void ChatView::placeNewLines() {
  const std::size_t whole = notes_.wholeLines();
  if (following_ || heldFrom_ > whole) heldFrom_ = whole;
  const std::size_t count = whole - heldFrom_;
  if (count == 0) {
    if (newLines_ != nullptr) newLines_->hide();
    return;
  }
  if (newLines_ == nullptr) {
    newLines_ = new QPushButton(viewport());
    newLines_->setFocusPolicy(Qt::NoFocus);
    newLines_->setCursor(Qt::ArrowCursor);
    connect(newLines_, &QPushButton::clicked, this, &ChatView::scrollToEnd);
  }
  newLines_->setText(count == 1 ? tr("1 new line") : tr("%1 new lines").arg(count));
  const QSize size = newLines_->sizeHint();
  newLines_->setGeometry((viewport()->width() - size.width()) / 2,
                         viewport()->height() - size.height() - kAboveEdge, size.width(),
                         size.height());
  newLines_->show();
}

void ChatView::paintNotes(QPainter& painter, ChatRow row, int y) const {
  if (notes_.isMarked(row.line)) {
    painter.fillRect(0, y, kMarkWidth, layout_.font().rowHeight(), palette().color(QPalette::Link));
  }
  // Where reading stopped, once something has come behind it.
  if (row.row == 0 && notes_.readTo() == row.line && row.line > 0 &&
      row.line < notes_.wholeLines()) {
    painter.fillRect(0, y, viewport()->width(), 1, palette().color(QPalette::PlaceholderText));
  }
}

bool ChatView::showTime(const QHelpEvent& event) {
  const std::optional<ChatRow> row = rowUnder(event.pos().y());
  const std::optional<std::time_t> came = row ? notes_.cameAt(row->line) : std::nullopt;
  if (came) {
    const QDateTime time = QDateTime::fromSecsSinceEpoch(*came);
    const bool today = time.date() == QDate::currentDate();
    QToolTip::showText(event.globalPos(),
                       today ? QLocale().toString(time.time(), QLocale::ShortFormat)
                             : QLocale().toString(time, QLocale::ShortFormat),
                       viewport());
  } else {
    QToolTip::hideText();
  }
  return true;
}

}  // namespace kelvaron
