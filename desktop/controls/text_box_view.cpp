#include "desktop/controls/text_box_view.h"

#include <QApplication>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QTextDocument>
#include <algorithm>
#include <limits>

#include "desktop/qt_values.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

// Pixels between a box's border and its text.
constexpr int kTextMargin = 4;
constexpr int kEndlessWord = 4096;
// Of a text that the user should look at before Enter.
constexpr Color kWarned{255, 190, 92};
constexpr std::size_t kMostOfWarning = 256;

void setColors(QWidget& widget, const TextBox& box, const std::optional<Color>& text) {
  QPalette palette;
  if (text) {
    palette.setColor(QPalette::Active, QPalette::Text, toQt(*text));
    palette.setColor(QPalette::Inactive, QPalette::Text, toQt(*text));
  }
  if (const auto& base = box.BackColor.get()) {
    palette.setColor(QPalette::Base, toQt(*base));
  } else if (box.Locked) {
    // As the window behind it: nothing is to be typed here.
    palette.setColor(QPalette::Base, QApplication::palette().color(QPalette::AlternateBase));
  }
  if (widget.palette() != palette) widget.setPalette(palette);
}

}  // namespace

TextBoxView::TextBoxView(TextBox& box, ViewHost& host, QWidget* widget)
    : ControlView(box, host, widget) {
  constexpr int kQuiet = 100;  // in ms
  rest_.setSingleShot(true);
  rest_.setInterval(kQuiet);
  connect(&rest_, &QTimer::timeout, this, [this] {
    if (!attached()) return;
    const Showing showing(*this);
    showUpTo(kMostShown);
  });
}

void TextBoxView::showBeginning() {
  const std::string& content = box().Text.get();
  const bool later = box().Locked && content.size() > kMostAtOnce;
  if (later && text() == toWidget(beginningOf(content, kMostShown))) return;
  if (showUpTo(later ? kMostAtOnce : kMostShown) && later) rest_.start();
}

bool TextBoxView::showUpTo(std::size_t bytes) {
  const std::string& content = box().Text.get();
  const QString shown = toWidget(beginningOf(content, bytes));
  if (text() == shown) return false;
  setText(shown);
  if (content.size() > bytes) setCaret(0);
  return true;
}

bool TextBoxView::type(const QString& text) {
  if (box().Locked || !usable()) return false;
  if (cut_) return true;
  widget().setFocus();
  setText(this->text() + text);
  setCaret(static_cast<int>(this->text().size()));
  return true;
}

void TextBoxView::textEdited() {
  if (showing() || !attached() || cut_) return;
  const QString edited = text();
  std::string typed = toControl(edited);
  if (typed.size() > kMostTyped && typed.size() > box().Text.get().size()) {
    const std::size_t length = typed.size();
    {
      const Showing showing(*this);
      refresh();
    }
    return host().tell(QStringLiteral("This is too long to be sent: it has %1 characters, and at "
                                      "most %2 are possible.")
                           .arg(length)
                           .arg(kMostTyped));
  }
  box().SelStart.setQuietly(static_cast<int>(toControl(edited.left(caret())).size()));
  if (run([&] { box().Text = std::move(typed); })) {
    const Showing showing(*this);
    refresh();
  }
}

void TextBoxView::caretMoved() {
  if (showing() || !attached() || cut_) return;
  box().SelStart.setQuietly(static_cast<int>(toControl(text().left(caret())).size()));
}

void TextBoxView::refresh() {
  const std::string& content = box().Text.get();
  cut_ = content.size() > kMostShown;
  refreshLook();
  showBeginning();
  if (cut_) return;
  const auto start = static_cast<std::size_t>(std::max(0, box().SelStart.get()));
  const auto wanted = static_cast<int>(toWidget(content.substr(0, start)).size());
  if (start <= content.size() && caret() != wanted) setCaret(wanted);
}

bool TextBoxView::enterPressed(Qt::KeyboardModifiers modifiers) {
  if (host().press(PressedBy::enter)) return true;
  const int shift = modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0;
  run([&] { box().KeyDown(key_code::kEnter, shift); });
  return true;
}

bool TextBoxView::eventFilter(QObject* watched, QEvent* event) {
  const bool leaves = ControlView::eventFilter(watched, event);
  if (leaves || !attached()) return leaves;
  if (event->type() == QEvent::MouseButtonDblClick) {
    run([this] { box().DblClick(); });
  } else if (event->type() == QEvent::MouseButtonRelease) {
    run([this] { box().Click(); });
  }
  return false;
}

TextLineView::TextLineView(TextBox& box, ViewHost& host, QWidget* parent)
    : TextBoxView(box, host, new QLineEdit(parent)), edit_(static_cast<QLineEdit&>(widget())) {
  edit_.setMaxLength(std::numeric_limits<int>::max());
  edit_.setDragEnabled(false);
  edit_.setTextMargins(kTextMargin, 0, kTextMargin, 0);
  connect(&edit_, &QLineEdit::textChanged, this, [this] { textEdited(); });
  connect(&edit_, &QLineEdit::cursorPositionChanged, this, [this] { caretMoved(); });
}

bool TextLineView::eventFilter(QObject* watched, QEvent* event) {
  if (watched == &edit_ && event->type() == QEvent::Resize && attached()) {
    constexpr int kBorders = 4;
    edit_.setFont(fittingFont(formFont(), [this](const QFont& font) {
      return QFontMetrics(font).height() + kBorders <= edit_.height();
    }));
  }
  return TextBoxView::eventFilter(watched, event);
}

std::string TextLineView::toControl(const QString& text) const {
  return withoutLineEnds(storedText(text));
}

QString TextLineView::toWidget(const std::string& text) const {
  return shownText(withoutLineEnds(text));
}

void TextLineView::refreshLook() {
  edit_.setReadOnly(box().Locked || cut());
  const char mask = box().PasswordChar;
  const QVariant character =
      mask == '\0' ? QVariant() : QVariant(int{unicodeOf(static_cast<unsigned char>(mask))});
  if (edit_.property(kPasswordCharacter) != character) {
    edit_.setProperty(kPasswordCharacter, character);
    edit_.setEchoMode(mask == '\0' ? QLineEdit::Normal : QLineEdit::Password);
    // The widget asks its style for the character at these events only.
    QEvent change(QEvent::StyleChange);
    QCoreApplication::sendEvent(&edit_, &change);
  }
  std::optional<Color> color = box().ForeColor;
  if (box().kind == ControlKind::richTextLine) {
    const auto& line = static_cast<const RichTextLine&>(box());
    const QString warning = shownText(beginningOf(line.Warning.get(), kMostOfWarning));
    color = warning.isEmpty() ? line.SelColor.get() : kWarned;
    edit_.setToolTip(warning);
    edit_.setAccessibleDescription(warning);
  }
  setColors(edit_, box(), color);
}

TextAreaView::TextAreaView(TextBox& box, ViewHost& host, QWidget* parent)
    : TextBoxView(box, host, new QPlainTextEdit(parent)),
      edit_(static_cast<QPlainTextEdit&>(widget())) {
  edit_.setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  edit_.setTabChangesFocus(true);
  edit_.document()->setDocumentMargin(kTextMargin + 2);
  edit_.viewport()->installEventFilter(this);
  connect(&edit_, &QPlainTextEdit::textChanged, this, [this] { textEdited(); });
  connect(&edit_, &QPlainTextEdit::cursorPositionChanged, this, [this] { caretMoved(); });
}

QString TextAreaView::text() const {
  // Not toPlainText: it makes blanks of no-break spaces.
  QString text = edit_.document()->toRawText();
  text.replace(QChar::ParagraphSeparator, '\n').replace(QChar::LineSeparator, '\n');
  return text;
}

void TextAreaView::setText(const QString& text) {
  // Looking for a place to break in a very long word takes the toolkit long.
  qsizetype word = 0;
  const bool endless = std::ranges::any_of(
      text, [&](QChar each) { return (word = each.isSpace() ? 0 : word + 1) > kEndlessWord; });
  edit_.setWordWrapMode(endless ? QTextOption::WrapAnywhere
                                : QTextOption::WrapAtWordBoundaryOrAnywhere);
  edit_.setPlainText(text);
}

void TextAreaView::setCaret(int caret) {
  QTextCursor cursor = edit_.textCursor();
  cursor.setPosition(std::min(caret, edit_.document()->characterCount() - 1));
  edit_.setTextCursor(cursor);
}

std::string TextAreaView::toControl(const QString& text) const {
  QString lines = text;
  lines.replace('\n', QStringLiteral("\r\n"));
  return storedText(lines);
}

QString TextAreaView::toWidget(const std::string& text) const {
  QString lines = shownText(text);
  lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace('\r', '\n');
  return lines;
}

void TextAreaView::refreshLook() {
  edit_.setReadOnly(box().Locked || cut());
  if (edit_.isReadOnly()) {
    edit_.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }
  setColors(edit_, box(), box().ForeColor);
}

bool TextAreaView::enterPressed(Qt::KeyboardModifiers modifiers) {
  // With a default button on the form, Ctrl+Enter begins a new line.
  if (modifiers.testFlag(Qt::ControlModifier)) {
    edit_.insertPlainText(QStringLiteral("\n"));
    return true;
  }
  if (host().press(PressedBy::enter)) return true;
  run([this] { box().KeyDown(key_code::kEnter, 0); });
  return false;
}

}  // namespace kelvaron
