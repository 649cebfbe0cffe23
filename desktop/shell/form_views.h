// The views of a form's controls, and what concerns several of them.
#pragma once

#include <memory>
#include <vector>

#include "desktop/controls/control_view.h"
#include "platform/form.h"

namespace kelvaron {

class FormFrame;

/// In the order of the form's controls; timers have none.
class FormViews : NonCopyable {
 public:
  /// Makes the views within `content`, and has labels name what stands behind them.
  FormViews(Form& form, ViewHost& host, QWidget& content);

  /// Takes the lowest row of buttons, which has the main one, out of what scrolls: the buttons as
  /// far from the right edge as on the form, a label in front of them from its place to the first.
  void keepInSight(FormFrame& frame) const;

  /// Lets go of the controls, which are about to be destroyed.
  void detach();

  /// Null where there is none.
  ControlView* of(const Control& control) const;
  ControlView* of(const QWidget& widget) const;

  /// Presses the first button for this key that can be pressed. False when there is none.
  bool press(PressedBy key) const;
  /// Types into the first text that can be edited.
  void typeAhead(const QString& text) const;
  /// Where the keyboard begins; null where it can't be anywhere.
  ControlView* firstFocus() const;

 private:
  std::vector<std::unique_ptr<ControlView>> views_;
};

}  // namespace kelvaron
