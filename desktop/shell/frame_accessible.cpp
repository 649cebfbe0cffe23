#include "desktop/shell/frame_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "desktop/shell/form_frame.h"

namespace kelvaron {
namespace {

QAccessibleInterface* makeFrameAccessible(const QString& /*type*/, QObject* object) {
  auto* frame = dynamic_cast<FormFrame*>(object);
  if (frame == nullptr) return nullptr;
  return new QAccessibleWidget(frame, frame->sizable() ? QAccessible::Window : QAccessible::Dialog);
}

}  // namespace

void installFrameAccessibility() {
  static const bool kInstalled = [] {
    QAccessible::installFactory(makeFrameAccessible);
    return true;
  }();
  static_cast<void>(kInstalled);
}

}  // namespace kelvaron
