// A command button on the screen.
#pragma once

#include <QPushButton>

#include "desktop/controls/control_view.h"

namespace kelvaron {

/// Dynamic property of a button: whether it is the one that its form is for.
inline constexpr const char* kMainButton = "kelvaronMainButton";

class ButtonView : public ControlView {
 public:
  ButtonView(CommandButton& button, ViewHost& host, QWidget* parent);

  FirstFocus firstFocus() const override {
    return button().Deliberate ? FirstFocus::never : FirstFocus::usual;
  }
  bool isButton() const override { return true; }
  bool press(PressedBy key) override;

 protected:
  void refresh() override;
  /// Enter presses the button that has the keyboard, whichever is the default one.
  bool enterPressed(Qt::KeyboardModifiers modifiers) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fitText();
  CommandButton& button() const { return static_cast<CommandButton&>(*control()); }

  QPushButton& button_;
};

}  // namespace kelvaron
