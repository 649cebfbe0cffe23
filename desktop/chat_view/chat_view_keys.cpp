// The chat view's keyboard: commands, extending the selection, scrolling, typing.
#include <QFocusEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <algorithm>

#include "desktop/chat_view/chat_find_bar.h"
#include "desktop/chat_view/chat_view.h"

namespace kelvaron {
namespace {

enum class Command {
  copy,
  selectAll,
  find,
  findNext,
  findPrevious,
  closeFind,
  zoomIn,
  zoomOut,
  zoomReset
};

struct StandardCommand {
  QKeySequence::StandardKey keys;
  Command command;
};
constexpr StandardCommand kStandardCommands[] = {
    {QKeySequence::Copy, Command::copy},
    {QKeySequence::SelectAll, Command::selectAll},
    {QKeySequence::Find, Command::find},
    {QKeySequence::FindNext, Command::findNext},
    {QKeySequence::FindPrevious, Command::findPrevious},
    {QKeySequence::ZoomIn, Command::zoomIn},
    {QKeySequence::ZoomOut, Command::zoomOut},
    {QKeySequence::Cancel, Command::closeFind},
};

std::optional<Command> commandOf(const QKeyEvent& key) {
  for (const StandardCommand& standard : kStandardCommands) {
    if (key.matches(standard.keys)) return standard.command;
  }
  if (key.modifiers().testFlag(Qt::ControlModifier) && !key.modifiers().testFlag(Qt::AltModifier)) {
    switch (key.key()) {
      case Qt::Key_Plus:
      case Qt::Key_Equal:
        return Command::zoomIn;
      case Qt::Key_Minus:
        return Command::zoomOut;
      case Qt::Key_0:
        return Command::zoomReset;
      default:
        break;
    }
  }
  return std::nullopt;
}

/// What the user typed to be read as text; empty for keys that do something.
QString typedText(const QKeyEvent& key) {
  const Qt::KeyboardModifiers commanding =
      key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const QString text = key.text();
  return !commanding && !text.isEmpty() && text.front().isPrint() ? text : QString();
}

}  // namespace

bool ChatView::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride) {
    auto* key = static_cast<QKeyEvent*>(event);
    const std::optional<Command> command = commandOf(*key);
    const bool barIsOpen = findBar_ != nullptr && !findBar_->isHidden();
    if (!typedText(*key).isEmpty() || (command && (*command != Command::closeFind || barIsOpen))) {
      event->accept();
      return true;
    }
  }
  return QAbstractScrollArea::event(event);
}

void ChatView::keyPressEvent(QKeyEvent* event) {
  if (commandByKey(*event) || extendByKey(*event) || scrollByKey(*event)) {
    event->accept();
    return;
  }
  const QString text = typedText(*event);
  if (text.isEmpty()) {
    event->ignore();
    return;
  }
  event->accept();
  Q_EMIT typed(text);
}

void ChatView::inputMethodEvent(QInputMethodEvent* event) {
  event->accept();
  if (!event->commitString().isEmpty()) Q_EMIT typed(event->commitString());
}

bool ChatView::isViewCommand(const QKeyEvent& key) const {
  const std::optional<Command> command = commandOf(key);
  return command && *command != Command::copy && *command != Command::selectAll &&
         *command != Command::closeFind;
}

bool ChatView::viewCommand(const QKeyEvent& key) {
  if (isViewCommand(key)) return commandByKey(key);
  const bool page = key.key() == Qt::Key_PageUp || key.key() == Qt::Key_PageDown;
  return page && !(key.modifiers() & ~Qt::KeypadModifier) && scrollByKey(key);
}

bool ChatView::commandByKey(const QKeyEvent& key) {
  const std::optional<Command> command = commandOf(key);
  if (!command) return false;
  switch (*command) {
    case Command::copy:
      copy();
      break;
    case Command::selectAll:
      selectAll();
      break;
    case Command::find:
      openFindBar();
      break;
    case Command::findNext:
    case Command::findPrevious:
      if (findBar().wanted().isEmpty()) {
        openFindBar();
      } else if (*command == Command::findNext) {
        findNext();
      } else {
        findPrevious();
      }
      break;
    case Command::closeFind:
      if (findBar_ == nullptr || findBar_->isHidden()) return false;
      closeFindBar();
      break;
    case Command::zoomIn:
      zoomBy(1);
      break;
    case Command::zoomOut:
      zoomBy(-1);
      break;
    case Command::zoomReset:
      resetZoom();
      break;
  }
  return true;
}

bool ChatView::extendByKey(const QKeyEvent& key) {
  if (!key.modifiers().testFlag(Qt::ShiftModifier)) return false;
  const bool far = key.modifiers().testFlag(Qt::ControlModifier);
  const TextPosition from = cursor();
  const std::size_t offset = text_.offsetOf(from);
  const ChatRow row = layout_.rowOf(from);
  const auto page = static_cast<std::ptrdiff_t>(pageRows());
  const auto byRows = [&](std::ptrdiff_t count) {
    const qreal goal = goalX_.value_or(layout_.xOf(row, from.column));
    moveCursor(rowsAway(count, goal));
    goalX_ = goal;
  };
  switch (key.key()) {
    case Qt::Key_Left:
      moveCursor(far ? previousWord(text_, from)
                     : text_.positionOf(offset - std::min<std::size_t>(offset, 1)));
      break;
    case Qt::Key_Right:
      moveCursor(far                                          ? nextWord(text_, from)
                 : from.column < text_.line(from.line).size() ? text_.positionOf(offset + 1)
                                                              : nextWord(text_, from));
      break;
    case Qt::Key_Up:
      byRows(-1);
      break;
    case Qt::Key_Down:
      byRows(1);
      break;
    case Qt::Key_PageUp:
      byRows(-page);
      break;
    case Qt::Key_PageDown:
      byRows(page);
      break;
    case Qt::Key_Home:
      moveCursor(far ? TextPosition{} : layout_.startOf(row));
      break;
    case Qt::Key_End:
      moveCursor(far ? text_.end() : layout_.endOf(row));
      break;
    default:
      return false;
  }
  return true;
}

/// The place so many rows from the cursor that is nearest to `goal`; beyond the first and the last
/// row the start and the end of the text.
TextPosition ChatView::rowsAway(std::ptrdiff_t count, qreal goal) const {
  const ChatRow from = layout_.rowOf(cursor());
  const ChatRow to = layout_.moved(from, count);
  if (to == from) return count < 0 ? TextPosition{} : text_.end();
  return layout_.placeAt(to, goal);
}

void ChatView::moveCursor(TextPosition place) {
  ChatSelection selection;
  selection.set(selection_.anchor(), place);
  setSelection(selection);
  reveal(place);
  offerPrimarySelection();
}

bool ChatView::scrollByKey(const QKeyEvent& key) {
  const auto page = static_cast<std::ptrdiff_t>(pageRows());
  switch (key.key()) {
    case Qt::Key_Up:
      scrollRows(-1);
      break;
    case Qt::Key_Down:
      scrollRows(1);
      break;
    case Qt::Key_PageUp:
      scrollRows(-std::max<std::ptrdiff_t>(page - 1, 1));
      break;
    case Qt::Key_PageDown:
      scrollRows(std::max<std::ptrdiff_t>(page - 1, 1));
      break;
    case Qt::Key_Home:
      scrollToStart();
      break;
    case Qt::Key_End:
      scrollToEnd();
      break;
    default:
      return false;
  }
  return true;
}

void ChatView::focusInEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusInEvent(event);
  viewport()->update();
}

void ChatView::focusOutEvent(QFocusEvent* event) {
  QAbstractScrollArea::focusOutEvent(event);
  viewport()->update();
}

}  // namespace kelvaron
