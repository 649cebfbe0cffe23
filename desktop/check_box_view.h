// A check box on the screen.
#pragma once

#include <QCheckBox>

#include "desktop/control_view.h"

namespace kelvaron {

/// The order of events at a mouse click: `MouseDown`, the value turns over, `Click`, `MouseUp`.
/// The keyboard turns the value over and raises `Click` alone.
class CheckBoxView : public ControlView {
 public:
  CheckBoxView(CheckBox& box, ViewHost& host, QWidget* parent);

  bool takesKeyboard() const override { return true; }

  void mouseDown(Qt::MouseButton button);
  void mouseUp(Qt::MouseButton button);

 protected:
  void refresh() override;
  bool refreshesAtOnce() const override { return true; }

 private:
  void turnedOver(bool checked);
  CheckBox& box() const { return static_cast<CheckBox&>(*control()); }

  QCheckBox& widget_;
};

/// The button numbers of the core; nothing for other buttons.
std::optional<MouseButton> toCore(Qt::MouseButton button);

}  // namespace kelvaron
