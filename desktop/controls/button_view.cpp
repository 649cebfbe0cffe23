#include "desktop/controls/button_view.h"

#include <QEvent>
#include <QGuiApplication>

#include "desktop/qt_values.h"

namespace kelvaron {

ButtonView::ButtonView(CommandButton& button, ViewHost& host, QWidget* parent)
    : ControlView(button, host, new QPushButton(parent)),
      button_(static_cast<QPushButton&>(widget())) {
  button_.setDefault(button.Default);
  connect(&button_, &QPushButton::pressed, this,
          [this] { run([this] { static_cast<CommandButton*>(control())->Pressed(); }); });
  connect(&button_, &QPushButton::clicked, this,
          [this] { run([this] { static_cast<CommandButton*>(control())->Click(); }); });
}

void ButtonView::refresh() {
  button_.setText(shownText(static_cast<CommandButton*>(control())->Caption.get()));
}

bool ButtonView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) {
    button_.setFont(captionFont(QGuiApplication::font()));
  }
  return ControlView::eventFilter(watched, event);
}

bool ButtonView::enterPressed(Qt::KeyboardModifiers /*modifiers*/) {
  press();
  return true;
}

}  // namespace kelvaron
