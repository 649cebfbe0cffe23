// The chat view's find bar and what it finds.
#include <string>

#include "chat/find.h"
#include "desktop/chat_view/chat_find_bar.h"
#include "desktop/chat_view/chat_view.h"
#include "desktop/text_conversion.h"

namespace kelvaron {

ChatFindBar& ChatView::findBar() {
  if (findBar_ == nullptr) {
    findBar_ = new ChatFindBar(this);
    findBar_->hide();
    connect(findBar_, &ChatFindBar::changed, this, &ChatView::findAsTyped);
    connect(findBar_, &ChatFindBar::nextWanted, this, &ChatView::findNext);
    connect(findBar_, &ChatFindBar::previousWanted, this, &ChatView::findPrevious);
    connect(findBar_, &ChatFindBar::closed, this, &ChatView::closeFindBar);
  }
  return *findBar_;
}

void ChatView::placeFindBar() {
  const bool open = findBar_ != nullptr && !findBar_->isHidden();
  const int height = open ? findBar_->sizeHint().height() : 0;
  if (viewportMargins().bottom() != height) setViewportMargins(0, 0, 0, height);
  if (open) {
    const QRect shown = viewport()->geometry();
    findBar_->setGeometry(shown.x(), shown.bottom() + 1, shown.width(), height);
  }
}

void ChatView::openFindBar() {
  const TextRange range = selection();
  const bool oneLine = !range.empty() && range.begin.line == range.end.line;
  findBar().open(oneLine ? shownText(selectedText()) : QString());
  placeFindBar();
}

void ChatView::closeFindBar() {
  findBar().hide();
  placeFindBar();
  setFocus(Qt::OtherFocusReason);
}

void ChatView::findAsTyped() { find(false, selection().begin); }

bool ChatView::findNext() {
  TextPosition from = selection().begin;
  from.column += selection_.empty() ? 0U : 1U;
  return find(false, from);
}

bool ChatView::findPrevious() { return find(true, selection().begin); }

bool ChatView::find(bool backwards, TextPosition from) {
  const QString wanted = findBar().wanted();
  if (wanted.isEmpty()) {
    findBar().tell({});
    return false;
  }
  const std::string bytes = storedText(wanted);
  std::optional<TextPosition> match;
  if (shownText(bytes) == wanted) {
    match = backwards ? findBackward(text_, bytes, from) : findForward(text_, bytes, from);
  }
  if (!match) {
    findBar().tell(tr("No match"));
    return false;
  }
  const bool wentRound = backwards ? *match > from : *match < from;
  findBar().tell(wentRound ? (backwards ? tr("From the end") : tr("From the start")) : QString());
  select(*match, {match->line, match->column + bytes.size()});
  showInMiddle(*match);
  return true;
}

}  // namespace kelvaron
