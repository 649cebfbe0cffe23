#include "desktop/shell/caret_rest.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace kelvaron {

CaretRest::CaretRest(std::chrono::milliseconds after)
    : blinking_(QGuiApplication::styleHints()->cursorFlashTime()) {
  timer_.setSingleShot(true);
  timer_.setInterval(after);
  connect(&timer_, &QTimer::timeout, this,
          [] { QGuiApplication::styleHints()->setCursorFlashTime(0); });
  timer_.start();
  QCoreApplication::instance()->installEventFilter(this);
}

CaretRest::~CaretRest() { QGuiApplication::styleHints()->setCursorFlashTime(blinking_); }

bool CaretRest::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::MouseButtonPress:
    case QEvent::ApplicationActivate:
      timer_.start();
      // Told to every text box, so only where it changes something.
      if (QStyleHints* hints = QGuiApplication::styleHints();
          hints->cursorFlashTime() != blinking_) {
        hints->setCursorFlashTime(blinking_);
      }
      break;
    default:
      break;
  }
  return false;
}

}  // namespace kelvaron
