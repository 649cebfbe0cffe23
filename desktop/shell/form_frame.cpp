#include "desktop/shell/form_frame.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/shell/frame_accessible.h"

namespace kelvaron {
namespace {

// What a window manager's frame may take around a window that is not on the screen yet, in pixels.
constexpr QSize kFrameAllowance{8, 32};

Qt::WindowFlags flags(FormFrame::Kind kind) {
  Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint;
  flags.setFlag(Qt::WindowCloseButtonHint, kind.closable);
  flags.setFlag(Qt::WindowMaximizeButtonHint, kind.sizable);
  return flags;
}

}  // namespace

FormFrame::FormFrame(Kind kind)
    : QWidget(nullptr, flags(kind)),
      kind_(kind),
      layout_(new QVBoxLayout(this)),
      content_(new QWidget(this)) {
  installFrameAccessibility();
  layout_->setContentsMargins({});
  layout_->setSpacing(0);
  layout_->addWidget(content_);
  if (!kind.sizable) layout_->setSizeConstraint(QLayout::SetFixedSize);
  content_->setAutoFillBackground(true);
  content_->installEventFilter(this);
}

void FormFrame::setMenuBar(QMenuBar* bar) {
  bar_ = bar;
  layout_->setMenuBar(bar);
}

QSize FormFrame::room() const { return screen()->availableSize() - kFrameAllowance; }

int FormFrame::barHeight(int width) const {
  if (bar_ == nullptr || bar_->isHidden()) return 0;
  return std::max(bar_->sizeHint().height(), bar_->heightForWidth(width));
}

void FormFrame::setContentSize(QSize size) {
  const QSize space = room() - QSize(0, barHeight(size.width()));
  if (kind_.sizable) {
    const QSize inside = size.boundedTo(space);
    resize(inside.width(), inside.height() + barHeight(inside.width()));
    return;
  }
  content_->setFixedSize(size);
  if (size != size.boundedTo(space)) scrollContent();
}

void FormFrame::setSmallestContent(QSize size) {
  setMinimumSize(QSize(size.width(), size.height() + barHeight(size.width())).boundedTo(room()));
}

void FormFrame::scrollContent() {
  if (std::exchange(scrolls_, true)) return;
  auto* area = new QScrollArea(this);
  area->setFrameShape(QFrame::NoFrame);
  delete layout_->replaceWidget(content_, area);
  area->setWidget(content_);
  layout_->setSizeConstraint(QLayout::SetDefaultConstraint);
  setMaximumSize(room());
  // As large as the content and the scroll bars that it may need, within the screen.
  const int bar = area->verticalScrollBar()->sizeHint().width();
  resize((content_->size() + QSize(bar, bar + barHeight(width()))).boundedTo(room()));
}

QWidget& FormFrame::splitOff(int top, int air) {
  auto* row = new QWidget(this);
  row->setAutoFillBackground(true);
  row->setPalette(content_->palette());
  row->setFixedHeight(content_->height() - top + air);
  content_->setFixedHeight(top);
  layout_->addWidget(row);
  return *row;
}

void FormFrame::centerOn(const QWidget* anchor) {
  const QRect around = anchor == nullptr ? screen()->availableGeometry() : anchor->frameGeometry();
  QRect place(QPoint(), expectedSize());
  place.moveCenter(around.center());
  moveOnScreen(place.topLeft());
}

QSize FormFrame::expectedSize() const {
  layout_->activate();
  const QSize inside = kind_.sizable || scrolls_ ? size() : sizeHint();
  const QSize frame = frameGeometry().size() - size();
  return inside + (frame.isEmpty() ? kFrameAllowance : frame);
}

void FormFrame::moveOnScreen(QPoint place) {
  const QRect space = screen()->availableGeometry();
  const QSize size = expectedSize();
  move(std::max(space.left(), std::min(place.x(), space.right() - size.width())),
       std::max(space.top(), std::min(place.y(), space.bottom() - size.height())));
}

void FormFrame::closeEvent(QCloseEvent* event) {
  event->ignore();
  if (kind_.closable && on.close) on.close();
}

void FormFrame::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  if (on.moved && isVisible()) on.moved(pos());
  tellFrame();
}

void FormFrame::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  tellFrame();
}

void FormFrame::tellFrame() {
  if (on.framed && isVisible()) on.framed(frameGeometry().height());
}

void FormFrame::showEvent(QShowEvent* event) {
  if (!event->spontaneous()) appearance_ = std::chrono::steady_clock::now();
  QWidget::showEvent(event);
}

void FormFrame::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (on.key && !event->isAutoRepeat()) on.key(Qt::Key_Return);
      break;
    case Qt::Key_Escape:
    case Qt::Key_F6:
      if (on.key) on.key(event->key());
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

bool FormFrame::eventFilter(QObject* watched, QEvent* event) {
  if (watched == content_ && event->type() == QEvent::Resize && kind_.sizable &&
      on.contentResized) {
    on.contentResized(content_->size());
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace kelvaron
