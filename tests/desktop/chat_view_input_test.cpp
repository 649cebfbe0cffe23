// Mouse and keyboard on the chat view: selecting, copying, links, typing.
#include <QAction>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolButton>
#include <algorithm>
#include <tuple>

#include "tests/desktop/chat_view_fixture.h"

namespace kelvaron::testing {
namespace {

TEST_F(ChatViewTest, MouseSelects) {
  append("first <line> here\r\nsecond line\r\nthird");
  click({1, 3});
  EXPECT_EQ(text.caret(), (TextPosition{1, 3}));
  EXPECT_TRUE(view.selection().empty());

  click({2, 2}, Qt::ShiftModifier);
  EXPECT_EQ(view.selectedText(), "ond line\nth");
  click({0, 7}, Qt::ShiftModifier);
  EXPECT_EQ(view.selectedText(), "line> here\nsec");

  press({0, 6});
  drag({1, 1});
  drag({0, 12});
  release(pointOf({0, 12}));
  EXPECT_EQ(view.selectedText(), "<line>");

  click({1, 8});
  doubleClick({1, 8});
  EXPECT_EQ(view.selectedText(), "line");
  drag({1, 2});
  EXPECT_EQ(view.selectedText(), "second line") << "a drag goes on by words";
  release(pointOf({1, 2}));

  doubleClick({0, 2});
  press({0, 2});
  EXPECT_EQ(view.selectedText(), "first <line> here") << "the third click takes the line";
  drag({1, 2});
  EXPECT_EQ(view.selectedText(), "first <line> here\nsecond line");
}

TEST_F(ChatViewTest, ADragBeyondTheEdgeScrolls) {
  appendLines(500);
  const ChatRow before = view.topRow();
  press({before.line + 2, 3});
  moveMouse({20, -50}, Qt::LeftButton);
  QTest::qWait(250);
  EXPECT_LT(view.topRow(), before);
  EXPECT_LT(view.cursor().line, before.line);
  release({20, -50});
  const ChatRow after = view.topRow();
  QTest::qWait(100);
  EXPECT_EQ(view.topRow(), after);
}

TEST_F(ChatViewTest, NothingMovesUnderAHeldButtonAndTheEndIsFollowedAfterIt) {
  appendLines(100);
  const ChatRow top = view.topRow();
  press({top.line + 2, 3});
  appendLines(50);
  EXPECT_EQ(view.topRow(), top);
  release(pointOf({top.line + 2, 3}));
  EXPECT_EQ(view.topRow(), (ChatRow{top.line + 50, 0}));
}

TEST_F(ChatViewTest, TheSelectionStaysWithItsText) {
  appendLines(10);
  view.select({4, 0}, {5, 4});
  appendLines(100);
  text.setCaret({4, 0});
  text.insert("in front\r\n");
  text.setCaret({5, 2});
  text.insert("!");
  EXPECT_EQ(view.selectedText(), "li!ne 4\nline");

  click({text.lineCount() - 3, 1});
  append("more");
  EXPECT_EQ(view.cursor(), (TextPosition{text.lineCount() - 3, 1})) << "a chosen place stays";
  view.select(text.end(), text.end());
  append("and more\r\n");
  EXPECT_EQ(view.cursor(), text.end()) << "the end is followed";
  view.selectAll();
  text.clear();
  EXPECT_TRUE(view.selection().empty());
}

TEST_F(ChatViewTest, ShiftAndKeysExtendTheSelection) {
  append("one two three\r\nfour\r\n\r\nfive six\r\n");
  constexpr auto kShift = Qt::ShiftModifier;
  constexpr auto kFar = Qt::ShiftModifier | Qt::ControlModifier;
  using Case = std::tuple<TextPosition, Qt::Key, Qt::KeyboardModifiers, TextPosition>;
  const Case cases[] = {
      {{0, 4}, Qt::Key_Left, kShift, {0, 3}},   {{1, 0}, Qt::Key_Left, kShift, {0, 13}},
      {{0, 0}, Qt::Key_Left, kShift, {0, 0}},   {{0, 13}, Qt::Key_Right, kShift, {1, 0}},
      {{0, 4}, Qt::Key_Right, kShift, {0, 5}},  {{4, 0}, Qt::Key_Right, kShift, {4, 0}},
      {{0, 1}, Qt::Key_Right, kFar, {0, 4}},    {{0, 6}, Qt::Key_Left, kFar, {0, 4}},
      {{0, 4}, Qt::Key_Home, kShift, {0, 0}},   {{0, 4}, Qt::Key_End, kShift, {0, 13}},
      {{3, 4}, Qt::Key_Home, kFar, {0, 0}},     {{0, 4}, Qt::Key_End, kFar, {4, 0}},
      {{1, 0}, Qt::Key_Up, kShift, {0, 0}},     {{0, 4}, Qt::Key_Up, kShift, {0, 0}},
      {{0, 0}, Qt::Key_Down, kShift, {1, 0}},   {{0, 2}, Qt::Key_PageDown, kShift, {4, 0}},
      {{4, 0}, Qt::Key_PageUp, kShift, {0, 0}}, {{4, 0}, Qt::Key_Down, kShift, {4, 0}}};
  for (const auto& [from, pressed, modifiers, to] : cases) {
    view.select(from, from);
    key(pressed, modifiers);
    EXPECT_EQ(view.cursor(), to) << from.line << ',' << from.column << " key " << pressed;
    EXPECT_EQ(view.selection(), (TextRange{std::min(from, to), std::max(from, to)}));
    EXPECT_EQ(text.caret(), to);
  }
  view.select({0, 12}, {0, 12});
  for (int i = 0; i < 3; ++i) key(Qt::Key_Down, kShift);
  EXPECT_EQ(view.cursor(), (TextPosition{3, 8})) << "short lines keep the column in mind";
}

TEST_F(ChatViewTest, CopyGivesUnicodeWithPlainLineEnds) {
  append("\x80 \xA5Moderator\r\n\xE9t\xE9");
  QClipboard* clipboard = QGuiApplication::clipboard();
  clipboard->setText("before");
  key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard->text(), "before") << "nothing selected, nothing copied";
  key(Qt::Key_A, Qt::ControlModifier);
  key(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(clipboard->text(), QString::fromUtf8("€ ¥Moderator\nété"));
  if (clipboard->supportsSelection()) {
    view.select({0, 2}, {0, 2});
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(clipboard->text(QClipboard::Selection), QString::fromUtf8("¥"));
  }
}

TEST_F(ChatViewTest, AClickOpensALinkADragSelectsIt) {
  append("see (http://example.org/a) or ftp://example.org/b\r\n");
  QSignalSpy opened(&view, &ChatView::linkActivated);
  moveMouse(pointOf({0, 10}));
  EXPECT_EQ(port->cursor().shape(), Qt::PointingHandCursor);
  moveMouse(pointOf({0, 2}));
  EXPECT_EQ(port->cursor().shape(), Qt::IBeamCursor);

  for (const std::size_t column : {1U, 25U, 32U, 45U}) click({0, column});
  QTest::mouseClick(port, Qt::LeftButton, {}, {395, 8});
  QTest::mouseClick(port, Qt::LeftButton, {}, {30, 250});
  QTest::mouseClick(port, Qt::RightButton, {}, pointOf({0, 10}));
  click({0, 10}, Qt::ShiftModifier);
  press({0, 6});
  drag({0, 20});
  release(pointOf({0, 20}));
  EXPECT_EQ(view.selectedText(), "ttp://example.");
  EXPECT_EQ(opened.count(), 0);

  QTest::qWait(QApplication::doubleClickInterval() + 1);
  click({0, 10});
  ASSERT_EQ(opened.count(), 1);
  EXPECT_EQ(opened[0][0].toUrl(), QUrl("http://example.org/a"));

  view.makeContextMenu(pointOf({0, 10}))->actions().front()->trigger();
  EXPECT_EQ(opened.count(), 2);
}

TEST_F(ChatViewTest, TheContextMenuOffersWhatCanBeDone) {
  append("plain words\r\n");
  const auto enabled = [&] {
    QStringList result;
    const auto menu = view.makeContextMenu(pointOf({0, 1}));
    for (const QAction* action : menu->actions()) {
      if (!action->isSeparator() && action->isEnabled()) result << action->text().remove('&');
    }
    return result;
  };
  EXPECT_EQ(enabled(),
            (QStringList{"Select All", "Find...", "Zoom In", "Zoom Out", "Normal Size"}));
  view.selectAll();
  EXPECT_EQ(enabled().front(), "Copy");
}

TEST_F(ChatViewTest, TypingIsPassedOnCommandsAreNot) {
  QSignalSpy typed(&view, &ChatView::typed);
  QTest::keyClicks(&view, "a /");
  key(Qt::Key_X, Qt::ControlModifier);
  key(Qt::Key_X, Qt::AltModifier);
  for (const auto silent : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Delete, Qt::Key_F5}) key(silent);
  QInputMethodEvent composed;
  composed.setCommitString(QString::fromUtf8("é"));
  QApplication::sendEvent(&view, &composed);
  QString all;
  for (const QList<QVariant>& arguments : typed) all += arguments[0].toString();
  EXPECT_EQ(all, QString::fromUtf8("a /é"));
}

TEST_F(ChatViewTest, AHintTakesRoomAboveTheTextAndGoesByItsButtons) {
  appendLines(100);
  turn();
  const int before = port->height();
  QSignalSpy followed(&view, &ChatView::hintFollowed);
  QSignalSpy closed(&view, &ChatView::hintClosed);
  view.setHint("<b>bob</b> hasn't answered. It is a long sentence, which takes a second row", "Go");
  EXPECT_LT(port->height(), before - 2 * view.fontMetrics().height());
  EXPECT_TRUE(view.atEnd());
  const auto* sentence = view.findChild<QLabel*>();
  EXPECT_EQ(sentence->textFormat(), Qt::PlainText);
  EXPECT_LE(sentence->mapTo(&view, sentence->rect().bottomLeft()).y(), port->y());
  view.findChild<QPushButton*>()->click();
  view.findChild<QToolButton*>()->click();
  turn();
  const QRect strip = sentence->parentWidget()->geometry();
  EXPECT_EQ(strip.right(), view.contentsRect().right());
  EXPECT_GT(view.verticalScrollBar()->mapTo(&view, QPoint()).y(), strip.bottom());
  EXPECT_EQ(followed.count(), 1);
  EXPECT_EQ(closed.count(), 1);
  view.setHint("short", {});
  EXPECT_FALSE(view.findChild<QPushButton*>()->isVisible());
  view.setHint({}, {});
  EXPECT_EQ(port->height(), before);
}

}  // namespace
}  // namespace kelvaron::testing
