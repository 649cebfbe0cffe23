#include <cctype>

#include "base/code_page.h"
#include "desktop/chat_view/chat_view.h"
#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {

namespace {

constexpr std::string_view kPrivate = "Private Message From ";
constexpr std::string_view kServer = "[Server] ";
// Of a longer line only the beginning is looked at.
constexpr std::size_t kLongestRead = 4096;

char capital(char character) {
  static const std::string capitals = [] {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    return upper(all);
  }();
  return capitals[static_cast<unsigned char>(character)];
}

bool isWordPart(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte >= 0x80 || std::isalnum(byte) != 0 || byte == '_';
}

/// A private message to the user, or the user's name in what somebody else says or does. `nick` is
/// in capitals.
bool isForUser(std::string_view line, const std::string& nick) {
  if (line.starts_with(kPrivate)) return true;
  line = line.substr(0, kLongestRead);
  if (nick.empty() || line.starts_with(kServer)) return false;
  for (std::size_t at = 0; at + nick.size() <= line.size(); ++at) {
    std::size_t same = 0;
    while (same < nick.size() && capital(line[at + same]) == nick[same]) ++same;
    if (same < nick.size()) continue;
    const std::size_t end = at + same;
    const bool whole =
        (at == 0 || !isWordPart(line[at - 1])) && (end == line.size() || !isWordPart(line[end]));
    // What begins with it is the user's own.
    if (whole) return at > 0;
  }
  return false;
}

}  // namespace

RichTextBoxView::RichTextBoxView(RichTextBox& box, ViewHost& host, QWidget* parent)
    : ControlView(box, host, new ChatView(box.Content, parent)) {
  auto* chat = static_cast<ChatView*>(&widget());
  // Queued, so that no handler runs while the chat view is on the stack.
  connect(
      chat, &ChatView::linkActivated, this,
      [this](const QUrl& url) { this->host().openPage(QString::fromLatin1(url.toEncoded())); },
      Qt::QueuedConnection);
  connect(
      chat, &ChatView::typed, this, [this](const QString& text) { this->host().typeAhead(text); },
      Qt::QueuedConnection);
  chat->setForUser([this]() -> ChatNotes::Test {
    if (!attached()) return {};
    return [nick = upper(this->host().ownNick())](std::string_view line) {
      return isForUser(line, nick);
    };
  });
  connect(chat, &ChatView::addressed, this, [this] { this->host().wantAttention(); });
}

void RichTextBoxView::detach() {
  ControlView::detach();
  // The chat view reads the control's text, which goes with the control.
  delete &widget();
}

void RichTextBoxView::refresh() {
  static_cast<ChatView&>(widget()).setBackground(
      toQt(static_cast<const RichTextBox&>(*control()).BackColor.get()));
}

}  // namespace kelvaron
