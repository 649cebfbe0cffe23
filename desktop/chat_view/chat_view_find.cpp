// What stands above and below the chat view's text: a hint, and the find bar with what it finds.
#include <string>

#include "chat/find.h"
#include "desktop/chat_view/chat_find_bar.h"
#include "desktop/chat_view/chat_hint.h"
#include "desktop/chat_view/chat_view.h"
#include "desktop/text_conversion.h"

namespace kelvaron {
namespace {

/// Lines of a text in which matches are counted.
constexpr std::size_t kMostCounted = 200'000;

}  // namespace

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

void ChatView::setHint(const QString& text, const QString& link) {
  if (hint_ == nullptr) {
    if (text.isEmpty()) return;
    hint_ = new ChatHint(this);
    connect(hint_, &ChatHint::followed, this, &ChatView::hintFollowed);
    connect(hint_, &ChatHint::closed, this, &ChatView::hintClosed);
  }
  hint_->tell(text, link);
  placeBars();
}

/// The hint above text and scroll bar, the find bar below them.
void ChatView::placeBars() {
  const QRect inside = contentsRect();
  const int above = hint_ == nullptr ? 0 : hint_->heightAt(inside.width());
  const bool open = findBar_ != nullptr && !findBar_->isHidden();
  const int below = open ? findBar_->sizeHint().height() : 0;
  if (const QMargins margins(0, above, 0, below); viewportMargins() != margins) {
    setViewportMargins(margins);
    keepScrollBarClear(aboveScrollBar_, Qt::AlignTop, above);
    keepScrollBarClear(belowScrollBar_, Qt::AlignBottom, below);
  }
  if (above > 0) hint_->setGeometry(inside.x(), inside.y(), inside.width(), above);
  if (open) findBar_->setGeometry(inside.x(), inside.bottom() + 1 - below, inside.width(), below);
}

void ChatView::keepScrollBarClear(QWidget*& space, Qt::Alignment at, int height) {
  if (space == nullptr) {
    space = new QWidget(this);
    addScrollBarWidget(space, at);
  }
  space->setFixedHeight(height);
}

void ChatView::openFindBar() {
  const TextRange range = selection();
  const bool oneLine = !range.empty() && range.begin.line == range.end.line;
  findBar().open(oneLine ? shownText(selectedText()) : QString());
  placeBars();
}

void ChatView::closeFindBar() {
  findBar().hide();
  placeBars();
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
  QString told = wentRound ? (backwards ? tr("from the end") : tr("from the start")) : QString();
  // Counting goes through all of the text, which takes longer than finding.
  if (text_.lineCount() <= kMostCounted) {
    const MatchCount count = countMatches(text_, bytes, *match);
    const QString place = tr("%1 of %2").arg(count.before + 1).arg(count.all);
    told = told.isEmpty() ? place : place + tr(", ") + told;
  }
  findBar().tell(told);
  select(*match, {match->line, match->column + bytes.size()});
  showInMiddle(*match);
  return true;
}

}  // namespace kelvaron
