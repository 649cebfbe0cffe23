#include "desktop/attention.h"
#include "desktop/chat_view/chat_view.h"
#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {

RichTextBoxView::RichTextBoxView(RichTextBox& box, ViewHost& host, QWidget* parent)
    : ControlView(box, host, new ChatView(box.Content, parent)) {
  auto* chat = static_cast<ChatView*>(&widget());
  // Queued, so that no handler runs while the chat view is on the stack.
  connect(
      chat, &ChatView::linkActivated, this,
      [this](const QUrl& url) {
        run([&] { this->box().LinkClick(url.toEncoded().toStdString()); });
      },
      Qt::QueuedConnection);
  connect(
      chat, &ChatView::typed, this, [this](const QString& text) { this->host().typeAhead(text); },
      Qt::QueuedConnection);
  chat->setForUser([this](std::string_view line) {
    return attached() && this->box().IsForUser && this->box().IsForUser(line);
  });
  connect(chat, &ChatView::addressed, this, [chat] { callForAttention(*chat->window()); });
}

void RichTextBoxView::detach() {
  ControlView::detach();
  // The chat view reads the control's text, which goes with the control.
  delete &widget();
}

void RichTextBoxView::refresh() {
  static_cast<ChatView&>(widget()).setBackground(toQt(box().BackColor.get()));
}

}  // namespace kelvaron
