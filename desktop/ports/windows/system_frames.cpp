#include "desktop/ports/system_frames.h"

#include <QEvent>
#include <QWidget>

#include "native/windows/system_headers.h"
// Needs the header before it.
#include <dwmapi.h>

namespace kelvaron {
namespace {

class FrameDarkener final : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    auto* window = event->type() == QEvent::Show ? qobject_cast<QWidget*>(watched) : nullptr;
    if (window != nullptr && window->isWindow()) darken(*window);
    return false;
  }

 private:
  static void darken(const QWidget& window) {
    // DWMWA_USE_IMMERSIVE_DARK_MODE, which the compiler's headers don't have yet. A system that
    // doesn't know it leaves the frame as it is.
    constexpr DWORD kDarkFrame = 20;
    const BOOL dark = TRUE;
    ::DwmSetWindowAttribute(reinterpret_cast<HWND>(window.winId()), kDarkFrame, &dark,
                            sizeof(dark));
  }
};

}  // namespace

void darkenFrames(QApplication& application) {
  application.installEventFilter(new FrameDarkener(&application));
}

}  // namespace kelvaron
