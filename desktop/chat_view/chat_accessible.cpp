#include "desktop/chat_view/chat_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <algorithm>

#include "desktop/chat_view/chat_view.h"
#include "desktop/text_conversion.h"

namespace kelvaron {
namespace {

/// The bus to screen readers ends a text at a NUL, so that is a blank, as on the screen.
QString spoken(std::string_view bytes) {
  return shownText(bytes).replace(QChar(u'\0'), QChar(u' '));
}

class ChatAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit ChatAccessible(ChatView* view)
      : QAccessibleWidget(view, QAccessible::EditableText), view_(*view) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                              : QAccessibleWidget::interface_cast(type);
  }

  QAccessible::State state() const override {
    QAccessible::State result = QAccessibleWidget::state();
    result.readOnly = true;
    result.multiLine = true;
    result.selectableText = true;
    return result;
  }

  /// Clients may ask beyond the text, or cut between the CR and the LF of a line end.
  QString text(int start, int end) const override {
    const int length = characterCount();
    start = std::clamp(start, 0, length);
    end = end < 0 ? length : std::clamp(end, start, length);
    const TextPosition from = placeOf(start);
    const QString whole = spoken(content().text(from, behind(placeOf(end), end)));
    return whole.mid(start - offsetOf(from), end - start);
  }
  using QAccessibleWidget::text;

  int characterCount() const override { return static_cast<int>(content().length()); }
  int cursorPosition() const override { return offsetOf(view_.cursor()); }
  void setCursorPosition(int offset) override {
    const TextPosition place = placeOf(offset);
    view_.select(place, place);
    view_.reveal(place);
  }

  int selectionCount() const override { return view_.selection().empty() ? 0 : 1; }
  void selection(int /*index*/, int* start, int* end) const override {
    const TextRange range = view_.selection();
    *start = range.empty() ? 0 : offsetOf(range.begin);
    *end = range.empty() ? 0 : offsetOf(range.end);
  }
  void addSelection(int start, int end) override { setSelection(0, start, end); }
  void removeSelection(int /*index*/) override { view_.select(view_.cursor(), view_.cursor()); }
  void setSelection(int /*index*/, int start, int end) override {
    view_.select(placeOf(start), placeOf(end));
  }
  void scrollToSubstring(int start, int end) override {
    view_.reveal(placeOf(end));
    view_.reveal(placeOf(start));
  }

  QRect characterRect(int offset) const override {
    const QRect rect = view_.characterRect(placeOf(offset));
    return rect.isNull() ? rect : rect.translated(origin());
  }
  int offsetAtPoint(const QPoint& point) const override {
    const QPoint inside = point - origin();
    return view_.viewport()->rect().contains(inside) ? offsetOf(view_.placeAt(inside)) : -1;
  }

  QString attributes(int offset, int* start, int* end) const override {
    const TextPosition place = placeOf(offset);
    if (place.column >= content().line(place.line).size()) {
      *start = *end = offset;
      return {};
    }
    const StyledText::Run run =
        content().run(place.line, content().runAt(place.line, place.column));
    *start = offsetOf({place.line, run.begin});
    *end = offsetOf({place.line, run.end});
    const Color color = run.style.color;
    return QStringLiteral("color:rgb(%1,%2,%3);font-weight:%4;")
        .arg(color.red)
        .arg(color.green)
        .arg(color.blue)
        .arg(run.style.bold ? QStringLiteral("bold") : QStringLiteral("normal"));
  }

  // The toolkit's own versions of these would fetch the whole text.
  QString textAtOffset(int offset, QAccessible::TextBoundaryType unit, int* start,
                       int* end) const override {
    return told(around(placeOf(offset), unit), start, end);
  }
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType unit, int* start,
                           int* end) const override {
    const int begin = offsetOf(around(placeOf(offset), unit).begin);
    if (begin == 0) return told({}, start, end);
    return told(around(placeOf(begin - 1), unit), start, end);
  }
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType unit, int* start,
                          int* end) const override {
    const TextPosition behind = around(placeOf(offset), unit).end;
    return told(behind == content().end() ? TextRange{behind, behind} : around(behind, unit), start,
                end);
  }

 private:
  const StyledText& content() const { return view_.content(); }
  TextPosition placeOf(int offset) const {
    return content().positionOf(static_cast<std::size_t>(std::max(offset, 0)));
  }
  /// The place at an offset, or the start of the next line if it is within a line end.
  TextPosition behind(TextPosition place, int offset) const {
    return offsetOf(place) < offset ? startOfNextLine(place.line) : place;
  }
  int offsetOf(TextPosition place) const { return static_cast<int>(content().offsetOf(place)); }
  QPoint origin() const { return view_.viewport()->mapToGlobal(QPoint(0, 0)); }

  QString told(TextRange range, int* start, int* end) const {
    *start = offsetOf(range.begin);
    *end = offsetOf(range.end);
    return spoken(content().text(range.begin, range.end));
  }

  TextPosition startOfNextLine(std::size_t line) const {
    return line + 1 < content().lineCount() ? TextPosition{line + 1, 0} : content().end();
  }

  /// The character, word, row or line of a place, with its line end.
  TextRange around(TextPosition place, QAccessible::TextBoundaryType unit) const {
    const std::size_t length = content().line(place.line).size();
    switch (unit) {
      case QAccessible::CharBoundary:
        return {place, place.column < length ? TextPosition{place.line, place.column + 1}
                                             : startOfNextLine(place.line)};
      case QAccessible::WordBoundary:
        if (place.column < length) return wordAt(content(), place);
        return {place, startOfNextLine(place.line)};
      case QAccessible::LineBoundary: {
        const ChatLayout& layout = view_.layoutOfText();
        const ChatRow row = layout.rowOf(place);
        const bool last = row.row + 1 == layout.rowCount(row.line);
        return {layout.startOf(row),
                last ? startOfNextLine(row.line) : layout.startOf({row.line, row.row + 1})};
      }
      case QAccessible::SentenceBoundary:
      case QAccessible::ParagraphBoundary:
        return {{place.line, 0}, startOfNextLine(place.line)};
      case QAccessible::NoBoundary:
        break;
    }
    return {{}, content().end()};
  }

  ChatView& view_;
};

/// What the chat is drawn on: the keyboard is at the chat, not there.
class ViewportAccessible : public QAccessibleWidget {
 public:
  explicit ViewportAccessible(QWidget* viewport) : QAccessibleWidget(viewport) {}

  QAccessible::State state() const override {
    QAccessible::State result = QAccessibleWidget::state();
    result.focusable = false;
    result.focused = false;
    return result;
  }
};

QAccessibleInterface* makeChatAccessible(const QString& /*className*/, QObject* object) {
  if (auto* view = qobject_cast<ChatView*>(object)) return new ChatAccessible(view);
  const auto* around = qobject_cast<ChatView*>(object->parent());
  if (around == nullptr || around->viewport() != object) return nullptr;
  return new ViewportAccessible(around->viewport());
}

}  // namespace

void installChatAccessibility() {
  static const bool kInstalled = [] {
    QAccessible::installFactory(makeChatAccessible);
    return true;
  }();
  static_cast<void>(kInstalled);
}

void tellTextInserted(ChatView& view, std::size_t offset, std::string_view text) {
  if (QAccessible::isActive()) {
    QAccessibleTextInsertEvent event(&view, static_cast<int>(offset), spoken(text));
    QAccessible::updateAccessibility(&event);
  }
}

void tellCursorMoved(ChatView& view) {
  if (!QAccessible::isActive()) return;
  const auto offset = [&](TextPosition place) {
    return static_cast<int>(view.content().offsetOf(place));
  };
  QAccessibleTextSelectionEvent event(&view, offset(view.selection().begin),
                                      offset(view.selection().end));
  event.setCursorPosition(offset(view.cursor()));
  QAccessible::updateAccessibility(&event);
  QAccessibleTextCursorEvent moved(&view, offset(view.cursor()));
  QAccessible::updateAccessibility(&moved);
}

}  // namespace kelvaron
