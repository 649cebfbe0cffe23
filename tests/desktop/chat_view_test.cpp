// The chat view under its user's hands: scrolling, selecting, finding, clicking, at any length.
#include "desktop/chat_view.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>
#include <string>
#include <vector>

#include "desktop/chat_find_bar.h"
#include "desktop/text_conversion.h"

namespace kelvaron {
namespace {

using Strings = std::vector<std::string>;

class ChatViewTest : public testing::Test {
 protected:
  ChatViewTest() {
    text.setColor({255, 255, 255});
    view.resize(400, 300);
    view.show();
    view.activateWindow();
    view.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  /// Appends as the chat does, whatever place the user chose.
  void append(const std::string& words) {
    text.caretToEnd();
    text.insert(words);
  }
  void appendLines(std::size_t count, std::size_t from = 0) {
    for (std::size_t i = from; i < from + count; ++i) {
      append("line " + std::to_string(i) + "\r\n");
    }
  }
  /// Lets a turn of the event loop show what changed.
  void turn() { QTest::qWait(30); }

  QPoint pointOf(TextPosition place) {
    const QRect rect = view.characterRect(place);
    EXPECT_FALSE(rect.isNull()) << place.line << ',' << place.column;
    return {rect.left() + 1, rect.center().y()};
  }
  void click(TextPosition place, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, pointOf(place));
  }
  void moveMouse(QPoint point, Qt::MouseButtons buttons = Qt::NoButton) {
    const QPointF local(point);
    QMouseEvent event(QEvent::MouseMove, local, view.viewport()->mapToGlobal(local), Qt::NoButton,
                      buttons, Qt::NoModifier);
    QApplication::sendEvent(view.viewport(), &event);
  }
  void wheel(int delta, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointF local(20, 20);
    QWheelEvent event(local, view.viewport()->mapToGlobal(local), {}, {0, delta}, Qt::NoButton,
                      modifiers, Qt::NoScrollPhase, false);
    QApplication::sendEvent(view.viewport(), &event);
  }
  void key(Qt::Key code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&view, code, modifiers);
  }

  StyledText text;
  ChatView view{text};
};

TEST_F(ChatViewTest, StaysAtTheEndButDoesNotMoveAReaderWhoScrolledUp) {
  appendLines(500);
  EXPECT_TRUE(view.atEnd());
  EXPECT_FALSE(view.characterRect({499, 0}).isNull());

  view.scrollRows(-100);
  turn();
  const ChatRow top = view.topRow();
  const QRect place = view.characterRect({top.line + 3, 2});
  appendLines(500, 500);
  turn();
  EXPECT_FALSE(view.atEnd());
  EXPECT_EQ(view.topRow(), top);
  EXPECT_EQ(view.characterRect({top.line + 3, 2}), place);

  text.setCaret({0, 0});
  text.insert("two lines\r\nin front\r\n");
  turn();
  EXPECT_EQ(view.topRow(), (ChatRow{top.line + 2, 0}));
  text.setCaret({top.line + 2, 0});
  text.insert("right above\r\n");
  EXPECT_EQ(view.topRow(), (ChatRow{top.line + 3, 0}));

  view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
  EXPECT_TRUE(view.atEnd());
  appendLines(1);
  EXPECT_TRUE(view.atEnd());
  EXPECT_FALSE(view.characterRect(text.end()).isNull());

  view.scrollRows(-30);
  text.clear();
  EXPECT_TRUE(view.atEnd());
  EXPECT_EQ(view.topRow(), ChatRow{});
}

TEST_F(ChatViewTest, ResizeAndZoomKeepTheTopLine) {
  for (int i = 0; i < 300; ++i) {
    append(std::string(40, 'w') + " and some more words that have to be wrapped " +
           std::to_string(i) + "\r\n");
  }
  turn();
  view.scrollRows(-201);
  const ChatRow top = view.topRow();
  ASSERT_GT(top.row, 0U);
  for (const int width : {150, 900, 401, 260}) {
    view.resize(width, 300);
    EXPECT_EQ(view.topRow().line, top.line) << width;
  }
  view.zoomBy(7);
  EXPECT_EQ(view.topRow().line, top.line);
  view.resetZoom();
  view.resize(400, 300);
  EXPECT_EQ(view.topRow(), top) << "no drift";

  view.scrollToEnd();
  view.resize(150, 200);
  EXPECT_TRUE(view.atEnd());
  EXPECT_FALSE(view.characterRect(text.end()).isNull());
}

TEST_F(ChatViewTest, AWrappedLineLongerThanThePageCanBeReadThrough) {
  append(std::string(20'000, 'x'));
  EXPECT_TRUE(view.atEnd());
  EXPECT_TRUE(view.characterRect({0, 0}).isNull());
  view.verticalScrollBar()->setValue(0);
  EXPECT_FALSE(view.characterRect({0, 0}).isNull());
  key(Qt::Key_PageDown);
  EXPECT_EQ(view.topRow(), (ChatRow{0, view.pageRows() - 1}));
  key(Qt::Key_End);
  EXPECT_TRUE(view.atEnd());
}

TEST_F(ChatViewTest, ManyChangesInATurnAreOneRepaint) {
  class Counter : public QObject {
   public:
    bool eventFilter(QObject*, QEvent* event) override {
      paints += event->type() == QEvent::Paint ? 1 : 0;
      return false;
    }
    int paints = 0;
  } counter;
  turn();
  view.viewport()->installEventFilter(&counter);
  appendLines(1'000);
  EXPECT_EQ(counter.paints, 0);
  turn();
  EXPECT_EQ(counter.paints, 1);
}

TEST_F(ChatViewTest, MouseSelects) {
  append("first <line> here\r\nsecond line\r\nthird");
  click({1, 3});
  EXPECT_EQ(text.caret(), (TextPosition{1, 3}));
  EXPECT_TRUE(view.selection().empty());

  click({2, 2}, Qt::ShiftModifier);
  EXPECT_EQ(view.selectedText(), "ond line\nth");
  click({0, 7}, Qt::ShiftModifier);
  EXPECT_EQ(view.selectedText(), "line> here\nsec");
  EXPECT_EQ(text.caret(), (TextPosition{0, 7}));

  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointOf({0, 6}));
  moveMouse(pointOf({1, 1}), Qt::LeftButton);
  moveMouse(pointOf({0, 12}), Qt::LeftButton);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, pointOf({0, 12}));
  EXPECT_EQ(view.selectedText(), "<line>");

  click({1, 8});
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, pointOf({1, 8}));
  EXPECT_EQ(view.selectedText(), "line");
  moveMouse(pointOf({1, 2}), Qt::LeftButton);
  EXPECT_EQ(view.selectedText(), "second line") << "a drag goes on by words";
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, pointOf({1, 2}));

  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, pointOf({0, 2}));
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointOf({0, 2}));
  EXPECT_EQ(view.selectedText(), "first <line> here") << "the third click takes the line";
  moveMouse(pointOf({1, 2}), Qt::LeftButton);
  EXPECT_EQ(view.selectedText(), "first <line> here\nsecond line");
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, pointOf({1, 2}));
}

TEST_F(ChatViewTest, ADragBeyondTheEdgeScrolls) {
  appendLines(500);
  turn();
  const ChatRow before = view.topRow();
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointOf({before.line + 2, 3}));
  moveMouse({20, -50}, Qt::LeftButton);
  QTest::qWait(250);
  EXPECT_LT(view.topRow(), before);
  EXPECT_LT(view.cursor().line, before.line);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, {20, -50});
  const ChatRow after = view.topRow();
  QTest::qWait(100);
  EXPECT_EQ(view.topRow(), after);
}

TEST_F(ChatViewTest, NothingMovesUnderAHeldButtonAndTheEndIsFollowedAfterIt) {
  appendLines(100);
  turn();
  const ChatRow top = view.topRow();
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointOf({top.line + 2, 3}));
  appendLines(50);
  turn();
  EXPECT_EQ(view.topRow(), top);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, pointOf({top.line + 2, 3}));
  EXPECT_EQ(view.topRow(), (ChatRow{top.line + 50, 0}));
}

TEST_F(ChatViewTest, TheSelectionStaysWithItsText) {
  appendLines(10);
  view.select({4, 0}, {5, 4});
  appendLines(100);
  EXPECT_EQ(view.selectedText(), "line 4\nline");
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
  struct Case {
    TextPosition from;
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    TextPosition to;
  };
  const std::vector<Case> cases = {
      {{0, 4}, Qt::Key_Left, kShift, {0, 3}},   {{1, 0}, Qt::Key_Left, kShift, {0, 13}},
      {{0, 0}, Qt::Key_Left, kShift, {0, 0}},   {{0, 13}, Qt::Key_Right, kShift, {1, 0}},
      {{0, 4}, Qt::Key_Right, kShift, {0, 5}},  {{4, 0}, Qt::Key_Right, kShift, {4, 0}},
      {{0, 1}, Qt::Key_Right, kFar, {0, 4}},    {{0, 6}, Qt::Key_Left, kFar, {0, 4}},
      {{0, 4}, Qt::Key_Home, kShift, {0, 0}},   {{0, 4}, Qt::Key_End, kShift, {0, 13}},
      {{3, 4}, Qt::Key_Home, kFar, {0, 0}},     {{0, 4}, Qt::Key_End, kFar, {4, 0}},
      {{1, 0}, Qt::Key_Up, kShift, {0, 0}},     {{0, 4}, Qt::Key_Up, kShift, {0, 0}},
      {{0, 0}, Qt::Key_Down, kShift, {1, 0}},   {{0, 2}, Qt::Key_PageDown, kShift, {4, 0}},
      {{4, 0}, Qt::Key_PageUp, kShift, {0, 0}}, {{4, 0}, Qt::Key_Down, kShift, {4, 0}},
  };
  for (const Case& c : cases) {
    view.select(c.from, c.from);
    key(c.key, c.modifiers);
    EXPECT_EQ(view.cursor(), c.to) << c.from.line << ',' << c.from.column << " key " << c.key;
    EXPECT_EQ(view.selection(), (TextRange{std::min(c.from, c.to), std::max(c.from, c.to)}));
    EXPECT_EQ(text.caret(), c.to);
  }
  view.select({0, 12}, {0, 12});
  for (int i = 0; i < 3; ++i) {
    key(Qt::Key_Down, kShift);
  }
  EXPECT_EQ(view.cursor(), (TextPosition{3, 8})) << "short lines keep the column in mind";
}

TEST_F(ChatViewTest, PlainKeysAndTheWheelScroll) {
  appendLines(500);
  view.scrollToStart();
  const std::size_t page = view.pageRows();
  struct Case {
    Qt::Key key;
    std::size_t top;
  };
  for (const Case& c : {Case{Qt::Key_Down, 1}, Case{Qt::Key_Up, 0},
                        Case{Qt::Key_PageDown, page - 1}, Case{Qt::Key_Home, 0},
                        Case{Qt::Key_End, 501 - page}, Case{Qt::Key_PageUp, 502 - 2 * page}}) {
    key(c.key);
    EXPECT_EQ(view.topRow(), (ChatRow{c.top, 0})) << c.key;
    EXPECT_TRUE(view.selection().empty());
  }
  view.scrollToStart();
  const auto notch = static_cast<std::size_t>(QApplication::wheelScrollLines());
  wheel(-120);
  EXPECT_EQ(view.topRow().line, notch);
  for (int i = 0; i < 8; ++i) {
    wheel(-15);
  }
  EXPECT_EQ(view.topRow().line, 2 * notch) << "small steps add up";
  wheel(240);
  EXPECT_EQ(view.topRow().line, 0U);
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

TEST_F(ChatViewTest, TheFindBarFindsTellsAndGivesTheFocusBack) {
  appendLines(300);
  append("\xC9T\xC9 of line 2\r\n");
  key(Qt::Key_F, Qt::ControlModifier);
  auto* bar = view.findChild<ChatFindBar*>();
  ASSERT_NE(bar, nullptr);
  auto* edit = bar->findChild<QLineEdit*>();
  const auto* message = bar->findChild<QLabel*>();
  EXPECT_TRUE(edit->hasFocus());
  EXPECT_FALSE(bar->geometry().intersects(view.viewport()->geometry()));
  EXPECT_TRUE(view.atEnd()) << "the bar took room from the view";

  view.select({0, 0}, {0, 0});
  QTest::keyClicks(edit, "LINE 2");
  const auto selected = [&] { return view.selection().begin; };
  EXPECT_EQ(selected(), (TextPosition{2, 0}));
  EXPECT_EQ(view.selectedText(), "line 2");
  EXPECT_FALSE(view.characterRect({2, 0}).isNull()) << "scrolled to it";
  struct Case {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    TextPosition match;
    const char* message;
  };
  const std::vector<Case> cases = {
      {Qt::Key_Return, Qt::NoModifier, {20, 0}, ""},
      {Qt::Key_F3, Qt::NoModifier, {21, 0}, ""},
      {Qt::Key_Return, Qt::ShiftModifier, {20, 0}, ""},
      {Qt::Key_F3, Qt::ShiftModifier, {2, 0}, ""},
      {Qt::Key_F3, Qt::ShiftModifier, {300, 7}, "From the end"},
      {Qt::Key_Return, Qt::NoModifier, {2, 0}, "From the start"},
  };
  for (const Case& c : cases) {
    QTest::keyClick(edit, c.key, c.modifiers);
    EXPECT_EQ(selected(), c.match);
    EXPECT_EQ(message->text(), c.message);
  }
  edit->setText(QString::fromUtf8("été"));
  EXPECT_EQ(selected(), (TextPosition{300, 0}));
  for (const char* nowhere : {"line 3000", "→"}) {
    edit->setText(QString::fromUtf8(nowhere));
    EXPECT_EQ(message->text(), "No match") << nowhere;
  }
  QTest::keyClick(edit, Qt::Key_Escape);
  EXPECT_TRUE(bar->isHidden());
  EXPECT_TRUE(view.hasFocus());
  EXPECT_EQ(view.viewport()->geometry().bottom(), view.contentsRect().bottom());

  edit->setText("line 299");
  key(Qt::Key_F3);
  EXPECT_EQ(selected(), (TextPosition{299, 0})) << "F3 works without the bar";
}

TEST_F(ChatViewTest, AClickOpensALinkADragSelectsIt) {
  append("see (http://example.org/a) or ftp://example.org/b\r\n");
  QSignalSpy opened(&view, &ChatView::linkActivated);
  moveMouse(pointOf({0, 10}));
  EXPECT_EQ(view.viewport()->cursor().shape(), Qt::PointingHandCursor);
  moveMouse(pointOf({0, 2}));
  EXPECT_EQ(view.viewport()->cursor().shape(), Qt::IBeamCursor);

  for (const std::size_t column : {1U, 25U, 32U, 45U}) {
    click({0, column});
  }
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {395, 8});
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {30, 250});
  QTest::mouseClick(view.viewport(), Qt::RightButton, {}, pointOf({0, 10}));
  click({0, 10}, Qt::ShiftModifier);
  QTest::mousePress(view.viewport(), Qt::LeftButton, {}, pointOf({0, 6}));
  moveMouse(pointOf({0, 20}), Qt::LeftButton);
  QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, pointOf({0, 20}));
  EXPECT_EQ(view.selectedText(), "ttp://example.");
  EXPECT_EQ(opened.count(), 0);

  QTest::qWait(QApplication::doubleClickInterval() + 1);
  click({0, 10});
  ASSERT_EQ(opened.count(), 1);
  EXPECT_EQ(opened[0][0].toUrl(), QUrl("http://example.org/a"));

  const auto menu = view.makeContextMenu(pointOf({0, 10}));
  menu->actions().front()->trigger();
  EXPECT_EQ(opened.count(), 2);
}

TEST_F(ChatViewTest, TheContextMenuOffersWhatCanBeDone) {
  append("plain words\r\n");
  const auto enabled = [&] {
    Strings result;
    const auto menu = view.makeContextMenu(pointOf({0, 1}));
    for (const QAction* action : menu->actions()) {
      if (!action->isSeparator() && action->isEnabled()) {
        result.push_back(storedText(action->text().remove('&')));
      }
    }
    return result;
  };
  EXPECT_EQ(enabled(), (Strings{"Select All", "Find...", "Zoom In", "Zoom Out", "Normal Size"}));
  view.selectAll();
  EXPECT_EQ(enabled().front(), "Copy");
}

TEST_F(ChatViewTest, ZoomChangesThisTextAloneWithinItsBounds) {
  append("words");
  const QFont own = view.font();
  const int size = view.fontSize();
  const int height = view.characterRect({0, 0}).height();
  key(Qt::Key_Plus, Qt::ControlModifier);
  key(Qt::Key_Equal, Qt::ControlModifier);
  EXPECT_EQ(view.fontSize(), size + 2);
  EXPECT_GT(view.characterRect({0, 0}).height(), height);
  wheel(-120, Qt::ControlModifier);
  EXPECT_EQ(view.fontSize(), size + 1);
  view.zoomBy(100);
  EXPECT_EQ(view.fontSize(), ChatView::kLargestFont);
  key(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(view.fontSize(), ChatView::kLargestFont - 1);
  view.zoomBy(-100);
  EXPECT_EQ(view.fontSize(), ChatView::kSmallestFont);
  EXPECT_EQ(view.font(), own);
  key(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(view.fontSize(), size);
  EXPECT_EQ(view.characterRect({0, 0}).height(), height);
}

TEST_F(ChatViewTest, TypingIsPassedOnCommandsAreNot) {
  QSignalSpy typed(&view, &ChatView::typed);
  QTest::keyClicks(&view, "a /");
  QTest::keyClick(&view, 'x', Qt::ControlModifier);
  QTest::keyClick(&view, 'x', Qt::AltModifier);
  for (const Qt::Key silent : {Qt::Key_Return, Qt::Key_Tab, Qt::Key_Delete, Qt::Key_F5}) {
    QTest::keyClick(&view, silent);
  }
  QInputMethodEvent composed;
  composed.setCommitString(QString::fromUtf8("é"));
  QApplication::sendEvent(&view, &composed);
  QString all;
  for (const QList<QVariant>& arguments : typed) {
    all += arguments[0].toString();
  }
  EXPECT_EQ(all, QString::fromUtf8("a /é"));
}

TEST_F(ChatViewTest, ScreenReadersReadTextCursorAndPlaces) {
  append(
      "one\r\ntwo words\r\nthr\xE9"
      "e");
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
  ASSERT_NE(accessible, nullptr);
  view.setAccessibleName("Room");
  EXPECT_EQ(accessible->text(QAccessible::Name), "Room");
  EXPECT_TRUE(accessible->state().readOnly);
  QAccessibleTextInterface* reader = accessible->textInterface();
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(reader->text(0, reader->characterCount()),
            QString::fromUtf8("one\r\ntwo words\r\nthrée"));
  EXPECT_EQ(reader->text(4, 8), "\ntwo");
  EXPECT_EQ(reader->text(1, 4), "ne\r");
  EXPECT_EQ(reader->text(3, 4), "\r");
  EXPECT_EQ(reader->text(-5, 9999).size(), 21);

  view.select({1, 4}, {1, 9});
  int start = 0;
  int end = 0;
  reader->selection(0, &start, &end);
  EXPECT_EQ(std::pair(start, end), std::pair(9, 14));
  EXPECT_EQ(reader->cursorPosition(), 14);
  reader->setSelection(0, 0, 3);
  EXPECT_EQ(view.selectedText(), "one");

  struct Case {
    int offset;
    QAccessible::TextBoundaryType unit;
    const char* before;
    const char* at;
    const char* after;
  };
  const std::vector<Case> cases = {
      {5, QAccessible::CharBoundary, "\r\n", "t", "w"},
      {9, QAccessible::WordBoundary, " ", "words", "\r\n"},
      {9, QAccessible::LineBoundary, "one\r\n", "two words\r\n",
       "thr\xC3\xA9"
       "e"},
      {0, QAccessible::ParagraphBoundary, "", "one\r\n", "two words\r\n"},
      {21, QAccessible::LineBoundary, "two words\r\n",
       "thr\xC3\xA9"
       "e",
       ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(reader->textBeforeOffset(c.offset, c.unit, &start, &end), QString(c.before));
    EXPECT_EQ(reader->textAfterOffset(c.offset, c.unit, &start, &end), QString(c.after));
    EXPECT_EQ(reader->textAtOffset(c.offset, c.unit, &start, &end), QString(c.at)) << c.offset;
    EXPECT_EQ(reader->text(start, end), QString(c.at));
  }
  for (const int offset : {0, 2, 7, 17}) {
    const QRect rect = reader->characterRect(offset);
    EXPECT_EQ(reader->offsetAtPoint({rect.left() + 1, rect.center().y()}), offset);
  }
  EXPECT_EQ(reader->offsetAtPoint({-5000, -5000}), -1);
}

TEST_F(ChatViewTest, AMillionLinesCostNoMoreThanAScreenful) {
  constexpr std::size_t kLines = 1'000'000;
  for (std::size_t i = 0; i < kLines; ++i) {
    text.insert("<somebody> a line of some words that nobody will ever read\r\n");
  }
  QElapsedTimer clock;
  const auto took = [&clock](auto action) {
    clock.start();
    action();
    return clock.elapsed();
  };
  // Generous: these take milliseconds, the search tens; a pass over the layout takes a second.
  EXPECT_LT(took([&] { turn(); }), 200);
  EXPECT_TRUE(view.atEnd());
  EXPECT_LT(took([&] {
              view.resize(300, 250);
              view.viewport()->repaint();
            }),
            200);
  view.verticalScrollBar()->setValue(kLines / 2);
  EXPECT_EQ(view.topRow(), (ChatRow{kLines / 2, 0}));
  EXPECT_LT(took([&] { append("needle\r\n"); }), 200);
  view.openFindBar();
  EXPECT_LT(took([&] { view.findChild<QLineEdit*>()->setText("NEEDLE"); }), 900);
  EXPECT_EQ(view.selection().begin, (TextPosition{kLines, 0}));
  EXPECT_FALSE(view.characterRect({kLines, 0}).isNull());
  QAccessibleTextInterface* reader = QAccessible::queryAccessibleInterface(&view)->textInterface();
  int start = 0;
  int end = 0;
  EXPECT_LT(took([&] {
              for (int i = 0; i < 1'000; ++i) {
                reader->textAtOffset(i * 60'000, QAccessible::LineBoundary, &start, &end);
              }
            }),
            500);
}

TEST_F(ChatViewTest, DrawsTextInItsColoursAndTheSelectionInItsOwn) {
  const auto brightest = [&](TextPosition place) {
    const QImage image = view.viewport()->grab(view.characterRect(place)).toImage();
    QColor result(Qt::black);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor pixel = image.pixelColor(x, y);
        result = pixel.value() > result.value() ? pixel : result;
      }
    }
    return result;
  };
  text.setColor({255, 0, 0});
  append("MMM");
  text.setColor({0, 255, 0});
  append("MMM \t\x01");
  view.select({0, 0}, {0, 0});
  EXPECT_GT(brightest({0, 1}).red(), 200);
  EXPECT_LT(brightest({0, 1}).green(), 60);
  EXPECT_GT(brightest({0, 4}).green(), 200);
  EXPECT_EQ(brightest({0, 7}), QColor(Qt::black)) << "TAB is a blank";
  EXPECT_EQ(brightest({0, 8}), QColor(Qt::black)) << "and so is a control character";
  view.select({0, 0}, {0, 2});
  EXPECT_GT(brightest({0, 1}).blue(), 200) << "selected text is white";
  view.setBackground(Qt::yellow);
  EXPECT_EQ(brightest({0, 7}), QColor(Qt::yellow));
}

TEST(ChatView, LeavesItsTextUsable) {
  StyledText text;
  { const ChatView view(text); }
  text.insert("still there");
  EXPECT_EQ(text.text(), "still there");
}

}  // namespace
}  // namespace kelvaron
