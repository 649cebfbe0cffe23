#include "desktop/controls/button_view.h"

#include <QEvent>
#include <QFontMetrics>

#include "desktop/qt_values.h"

namespace kelvaron {

ButtonView::ButtonView(CommandButton& button, ViewHost& host, QWidget* parent)
    : ControlView(button, host, new QPushButton(parent)),
      button_(static_cast<QPushButton&>(widget())) {
  button_.setDefault(button.Default);
  button_.setProperty(kMainButton, button.Main);
  connect(&button_, &QPushButton::pressed, this,
          [this] { run([this] { this->button().Pressed(); }); });
  connect(&button_, &QPushButton::clicked, this,
          [this] { run([this] { this->button().Click(); }); });
}

void ButtonView::refresh() {
  button_.setText(shownText(button().Caption.get()));
  fitText();
}

/// The form's font, or as much of it as the button has room for.
void ButtonView::fitText() {
  constexpr QSize kMargins(8, 2);
  button_.setFont(fittingFont(formFont(), [&](const QFont& font) {
    const QSize text = QFontMetrics(font).size(Qt::TextShowMnemonic, button_.text());
    return text.boundedTo(button_.size() - kMargins) == text;
  }));
}

bool ButtonView::press(PressedBy key) {
  if (!(key == PressedBy::enter ? button().Default : button().Cancel)) return false;
  settle();
  // While the cancel button can't be pressed Escape does nothing, rather than close the window.
  if (!usable()) return key == PressedBy::escape;
  button_.click();
  return true;
}

bool ButtonView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) {
    fitText();
  }
  return ControlView::eventFilter(watched, event);
}

bool ButtonView::enterPressed(Qt::KeyboardModifiers /*modifiers*/) {
  button_.click();
  return true;
}

}  // namespace kelvaron
