#include "desktop/attention.h"

#include <QApplication>

namespace kelvaron {

void callForAttention(QWidget& window) {
  if (QApplication::applicationState() != Qt::ApplicationActive) QApplication::alert(&window);
}

}  // namespace kelvaron
