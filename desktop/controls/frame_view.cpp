#include <QEvent>
#include <QFontMetrics>

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
  if (event->type() == QEvent::Resize && attached()) {
    // A caption stands in the upper border, which goes on beside it.
    constexpr int kBorder = 32;
    const QString caption = static_cast<QGroupBox&>(widget()).title();
    widget().setFont(fittingFont(captionFont(formFont()), [&](const QFont& font) {
      return QFontMetrics(font).horizontalAdvance(caption) + kBorder <= widget().width();
    }));
  }
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
