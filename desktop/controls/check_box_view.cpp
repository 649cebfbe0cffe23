#include <QMouseEvent>

#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

/// The button numbers of the core; nothing for other buttons.
std::optional<MouseButton> toCore(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton:
      return MouseButton::left;
    case Qt::RightButton:
      return MouseButton::right;
    case Qt::MiddleButton:
      return MouseButton::middle;
    default:
      return std::nullopt;
  }
}

class MouseCheckBox : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;
  CheckBoxView* view = nullptr;

 protected:
  void mousePressEvent(QMouseEvent* event) override {
    QCheckBox::mousePressEvent(event);
    view->mouseDown(event->button());
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    QCheckBox::mouseReleaseEvent(event);
    view->mouseUp(event->button());
  }
};

}  // namespace

CheckBoxView::CheckBoxView(CheckBox& box, ViewHost& host, QWidget* parent)
    : ControlView(box, host, new MouseCheckBox(parent)),
      widget_(static_cast<QCheckBox&>(widget())) {
  static_cast<MouseCheckBox&>(widget_).view = this;
  connect(&widget_, &QCheckBox::toggled, this, [this](bool checked) { turnedOver(checked); });
}

void CheckBoxView::mouseDown(Qt::MouseButton button) {
  if (const auto core = toCore(button)) run([&] { box().MouseDown(*core); });
}

void CheckBoxView::mouseUp(Qt::MouseButton button) {
  if (const auto core = toCore(button)) run([&] { box().MouseUp(*core); });
}

void CheckBoxView::turnedOver(bool checked) {
  if (showing()) return;
  run([&] {
    box().Value = checked ? 1 : 0;
    box().Click();
  });
}

void CheckBoxView::refresh() {
  widget_.setText(shownText(box().Caption.get()));
  widget_.setChecked(box().Value != 0);
}

}  // namespace kelvaron
