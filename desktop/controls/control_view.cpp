#include "desktop/controls/control_view.h"

#include <QKeyEvent>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "desktop/qt_values.h"

namespace kelvaron {

ControlView::ControlView(Control& control, ViewHost& host, QWidget* widget)
    : control_(&control),
      host_(host),
      widget_(widget),
      designed_(toPixels(control.Width, host.scale()), toPixels(control.Height, host.scale())) {}

ControlView::~ControlView() {
  if (control_ == nullptr) return;
  control_->onRefresh = nullptr;
}

void ControlView::attach() {
  if (!control_->AccessibleName.empty()) {
    widget_->setAccessibleName(shownText(control_->AccessibleName));
  }
  if (!control_->ToolTipText.empty()) widget_->setToolTip(shownText(control_->ToolTipText));
  control_->onRefresh = [this] { changed(); };
  widget_->installEventFilter(this);
  refreshAll();
}

void ControlView::moveInto(QWidget& parent, QPoint origin) {
  const bool shown = !widget_->isHidden();
  origin_ = origin;
  widget_->setParent(&parent);
  refreshPlace();
  widget_->setVisible(shown);
}

void ControlView::layOut(QRect place, const QFont& font) {
  layout_ = {place, font};
  if (attached()) refreshAll();
}

void ControlView::detach() {
  if (control_ == nullptr) return;
  control_->onRefresh = nullptr;
  control_ = nullptr;
  waits_ = false;
}

void ControlView::setNameFromLabel(const QString& name) {
  if (control_ != nullptr && control_->AccessibleName.empty()) widget_->setAccessibleName(name);
}

void ControlView::changed() {
  refreshPlace();
  if (refreshesAtOnce()) {
    refreshAll();
    return;
  }
  if (std::exchange(waits_, true)) return;
  const auto inATurn = [this](auto what) {
    QMetaObject::invokeMethod(this, what, Qt::QueuedConnection);
  };
  if (const auto delay = refreshDelay(); delay > delay.zero()) {
    QTimer::singleShot(delay, this, [this, inATurn] {
      if (waits_) prepareRefresh();
      inATurn([this] { settle(); });
    });
    return;
  }
  inATurn([this] { settle(); });
}

void ControlView::settle() {
  if (std::exchange(waits_, false) && attached()) refreshAll();
}

void ControlView::refreshAll() {
  const Showing showing(*this);
  refreshPlace();
  // What nobody sees costs nothing; it shows what it holds when it appears.
  if (!control_->Visible) return widget_->hide();
  widget_->setEnabled(control_->Enabled);
  refresh();
  widget_->show();
}

void ControlView::refreshPlace() {
  if (layout_) return widget_->setGeometry(layout_->place);
  const qreal scale = host_.scale();
  const QPoint place(toPixels(control_->Left, scale), toPixels(control_->Top, scale));
  const QSize size(toPixels(control_->Width, scale), toPixels(control_->Height, scale));
  widget_->setGeometry({place - origin_, size});
}

QFont ControlView::captionFont(QFont font) const {
  if (layout_) return layout_->font;
  if (designed_.isEmpty()) return font;
  const qreal share = std::min(static_cast<qreal>(widget_->width()) / designed_.width(),
                               static_cast<qreal>(widget_->height()) / designed_.height());
  const qreal points = font.pointSizeF();
  // In steps, so that captions that stand together have one size.
  constexpr qreal kStep = 0.5;
  const qreal smaller = std::floor(points * share / kStep) * kStep;
  font.setPointSizeF(std::clamp(smaller, points / host_.scale(), points));
  return font;
}

QFont ControlView::fittingFont(QFont font, const std::function<bool(const QFont&)>& fits) const {
  // Of the smallest text elsewhere: whole captions in a window made small.
  constexpr qreal kSmallest = 7.0 / 9;
  constexpr qreal kStep = 0.5;  // in points
  const qreal smallest = captionFont(formFont()).pointSizeF() * kSmallest;
  while (font.pointSizeF() > smallest && !fits(font)) {
    font.setPointSizeF(std::max(smallest, font.pointSizeF() - kStep));
  }
  return font;
}

bool ControlView::enterPressed(Qt::KeyboardModifiers /*modifiers*/) {
  return host_.press(PressedBy::enter);
}

bool ControlView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress || watched != widget_ || !attached()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // A key held down in a box must not press on in the window behind it.
      return key->isAutoRepeat() || enterPressed(key->modifiers());
    case Qt::Key_Escape:
      return host_.press(PressedBy::escape);
    default:
      return false;
  }
}

}  // namespace kelvaron
