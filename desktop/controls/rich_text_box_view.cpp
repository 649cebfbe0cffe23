#include "desktop/attention.h"
#include "desktop/chat_view/chat_view.h"
#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

// Characters; a nickname in it may be of any length.
constexpr std::size_t kMostOfHint = 256;

}  // namespace

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
  connect(chat, &ChatView::hintFollowed, this,
          [this] { run([&] { this->box().HintFollowed(); }); });
  connect(chat, &ChatView::hintClosed, this, [this] { run([&] { this->box().HintClosed(); }); });
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
  auto& chat = static_cast<ChatView&>(widget());
  chat.setBackground(toQt(box().BackColor.get()));
  const Hint& hint = box().Hint_;
  chat.setHint(shownText(beginningOf(hint.text, kMostOfHint)), shownText(hint.link));
}

}  // namespace kelvaron
