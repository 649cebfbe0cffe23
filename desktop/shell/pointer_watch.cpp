#include "desktop/shell/pointer_watch.h"

#include <QMouseEvent>
#include <QWidget>
#include <utility>

namespace kelvaron {

PointerWatch::PointerWatch(QWidget& surface) : surface_(surface) {
  QList<QWidget*> widgets = surface.findChildren<QWidget*>();
  widgets.append(&surface);
  for (QWidget* widget : std::as_const(widgets)) {
    widget->setMouseTracking(true);
    widget->installEventFilter(this);
  }
}

bool PointerWatch::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseMove:
      moved(under(*static_cast<QMouseEvent*>(event)));
      break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease: {
      // What a widget doesn't want comes on to those behind it, the surface last.
      const auto& mouse = *static_cast<QMouseEvent*>(event);
      if (watched != &surface_ || mouse.button() != Qt::LeftButton) break;
      const QWidget* at = under(mouse);
      if (event->type() == QEvent::MouseButtonPress) {
        pressed_ = at;
      } else if (at != nullptr && std::exchange(pressed_, nullptr) == at && onClicked) {
        onClicked(*at);
      }
      break;
    }
    default:
      break;
  }
  return false;
}

const QWidget* PointerWatch::under(const QMouseEvent& event) const {
  const QPoint place = surface_.mapFromGlobal(event.globalPosition().toPoint());
  if (!surface_.rect().contains(place)) return nullptr;
  const QWidget* child = surface_.childAt(place);
  return child == nullptr ? &surface_ : child;
}

void PointerWatch::moved(const QWidget* over) {
  if (over == nullptr) return;
  over_ = over;
  if (std::exchange(waits_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        waits_ = false;
        if (over_ && onMoved) onMoved(*over_);
      },
      Qt::QueuedConnection);
}

}  // namespace kelvaron
