#include "desktop/controls/button_view.h"

#include <QEvent>

#include "desktop/qt_values.h"

namespace kelvaron {

ButtonView::ButtonView(CommandButton& button, ViewHost& host, QWidget* parent)
    : ControlView(button, host, new QPushButton(parent)),
      button_(static_cast<QPushButton&>(widget())) {
  button_.setDefault(button.Default);
  connect(&button_, &QPushButton::pressed, this,
          [this] { run([this] { static_cast<CommandButton*>(control())->Pressed(); }); });
  connect(&button_, &QPushButton::clicked, this,
          [this] { run([this] { this->button().Click(); }); });
}

void ButtonView::refresh() { button_.setText(shownText(button().Caption.get())); }

bool ButtonView::press(PressedBy key) {
  if (!(key == PressedBy::enter ? button().Default : button().Cancel)) return false;
  settle();
  if (!usable()) return false;
  button_.click();
  return true;
}

bool ButtonView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) {
    button_.setFont(captionFont(formFont()));
  }
  return ControlView::eventFilter(watched, event);
}

bool ButtonView::enterPressed(Qt::KeyboardModifiers /*modifiers*/) {
  button_.click();
  return true;
}

}  // namespace kelvaron
