#include "desktop/controls/input_line_view.h"

#include <QKeyEvent>

#include "desktop/chat_view/chat_view.h"
#include "desktop/qt_values.h"

namespace kelvaron {

InputLineView::InputLineView(TextBox& box, ViewHost& host, QWidget* parent)
    : TextLineView(box, host, parent) {}

void InputLineView::refreshLook() {
  TextLineView::refreshLook();
  edit().setPlaceholderText(shownText(static_cast<const RichTextLine&>(box()).Placeholder.get()));
}

bool InputLineView::enterPressed(Qt::KeyboardModifiers modifiers) {
  const QString line = text();
  const bool used = TextLineView::enterPressed(modifiers);
  // What is still there wasn't sent.
  if (attached() && !line.isEmpty() && box().Text.get().empty()) history_.add(line);
  return used;
}

bool InputLineView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &edit() && attached()) {
    if (event->type() == QEvent::ShortcutOverride) {
      // Before a shortcut of the window, as the chat view takes them.
      if (ChatView* chat = this->chat();
          chat != nullptr && chat->isViewCommand(static_cast<QKeyEvent&>(*event))) {
        event->accept();
        return true;
      }
    } else if (event->type() == QEvent::KeyPress && keyPressed(static_cast<QKeyEvent&>(*event))) {
      return true;
    }
  }
  return TextLineView::eventFilter(watched, event);
}

bool InputLineView::keyPressed(const QKeyEvent& key) {
  const bool plain = key.modifiers() == Qt::NoModifier || key.modifiers() == Qt::KeypadModifier;
  ChatView* chat = this->chat();
  switch (key.key()) {
    case Qt::Key_Tab:
      return plain && complete();
    case Qt::Key_Up:
      return plain && show(history_.older(text()));
    case Qt::Key_Down:
      return plain && show(history_.newer());
    case Qt::Key_Escape:
      if (chat != nullptr) chat->scrollToEnd();
      return false;
    default:
      return chat != nullptr && chat->viewCommand(key);
  }
}

ChatView* InputLineView::chat() const { return edit().window()->findChild<ChatView*>(); }

bool InputLineView::complete() {
  const auto& line = static_cast<const RichTextLine&>(box());
  bool completed = false;
  run([&] { completed = line.Complete && line.Complete(); });
  return completed;
}

bool InputLineView::show(const std::optional<QString>& line) {
  if (line) edit().setText(*line);
  return true;
}

}  // namespace kelvaron
