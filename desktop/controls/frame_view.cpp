#include <QEvent>

#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {

FrameView::FrameView(Frame& frame, ViewHost& host, QWidget* parent)
    : ControlView(frame, host, new QGroupBox(parent)) {}

void FrameView::refresh() {
  auto& box = static_cast<QGroupBox&>(widget());
  const auto& frame = static_cast<const Frame&>(*control());
  box.setTitle(shownText(frame.Caption.get()));
  if (const auto& color = frame.ForeColor.get()) {
    QPalette palette;
    palette.setColor(QPalette::WindowText, toQt(*color));
    box.setPalette(palette);
  }
}

bool FrameView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) widget().setFont(captionFont(formFont()));
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
