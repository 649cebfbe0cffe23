// The chat view at any length: scrolling, zoom, find, its voice and its colours.
#include <QAccessible>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <tuple>

#include "desktop/chat_view/chat_find_bar.h"
#include "tests/desktop/chat_view_fixture.h"

namespace kelvaron::testing {
namespace {

TEST_F(ChatViewTest, StaysAtTheEndButDoesNotMoveAReaderWhoScrolledUp) {
  appendLines(500);
  // The last line itself, and no blank row below it.
  EXPECT_GE(view.characterRect({499, 0}).bottom(), port->rect().bottom() - 3);
  EXPECT_EQ(view.characterRect(text.end()).bottom(), view.characterRect({499, 0}).bottom());

  view.scrollRows(-100);
  const ChatRow top = view.topRow();
  const QRect place = view.characterRect({top.line + 3, 2});
  appendLines(500);
  EXPECT_FALSE(view.atEnd());
  EXPECT_EQ(view.topRow(), top);
  EXPECT_EQ(view.characterRect({top.line + 3, 2}), place);

  text.setCaret({0, 0});
  text.insert("two lines\r\nin front\r\n");
  EXPECT_EQ(view.topRow(), (ChatRow{top.line + 2, 0}));
  text.setCaret({top.line + 2, 0});
  text.insert("right above\r\n");
  EXPECT_EQ(view.topRow(), (ChatRow{top.line + 3, 0}));

  text.clear();
  EXPECT_TRUE(view.atEnd());
  EXPECT_EQ(view.topRow(), ChatRow{});
}

TEST_F(ChatViewTest, ResizeAndZoomKeepTheTopLine) {
  for (int i = 0; i < 300; ++i) {
    append(std::string(40, 'w') + " and some more words that have to be wrapped\r\n");
  }
  turn();
  view.scrollRows(-200);
  while (view.topRow().row == 0) view.scrollRows(-1);
  const ChatRow top = view.topRow();
  for (const int width : {150, 900, 401, 260}) {
    view.resize(width, 300);
    EXPECT_EQ(view.topRow().line, top.line) << width;
  }
  view.zoomBy(7);
  EXPECT_EQ(view.topRow().line, top.line);
  view.resetZoom();
  view.resize(400, 300);
  EXPECT_EQ(view.topRow(), top) << "no drift";
}

TEST_F(ChatViewTest, AWrappedLineLongerThanThePageCanBeReadThrough) {
  append(std::string(20'000, 'x'));
  EXPECT_TRUE(view.characterRect({0, 0}).isNull());
  view.verticalScrollBar()->setValue(0);
  EXPECT_FALSE(view.characterRect({0, 0}).isNull());
  key(Qt::Key_PageDown);
  EXPECT_EQ(view.topRow(), (ChatRow{0, view.pageRows() - 1}));
  key(Qt::Key_End);
  EXPECT_TRUE(view.atEnd());
}

TEST_F(ChatViewTest, ManyChangesInATurnAreOneRepaint) {
  struct Counter : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      paints += event->type() == QEvent::Paint ? 1 : 0;
      return false;
    }
    int paints = 0;
  } counter;
  turn();
  port->installEventFilter(&counter);
  appendLines(1'000);
  EXPECT_EQ(counter.paints, 0);
  turn();
  EXPECT_EQ(counter.paints, 1);
}

TEST_F(ChatViewTest, PlainKeysAndTheWheelScroll) {
  appendLines(500);
  view.scrollToStart();
  const std::size_t page = view.pageRows();
  using Case = std::pair<Qt::Key, std::size_t>;
  for (const auto& [pressed, top] :
       {Case{Qt::Key_Down, 1}, Case{Qt::Key_Up, 0}, Case{Qt::Key_PageDown, page - 1},
        Case{Qt::Key_End, 500 - page}, Case{Qt::Key_PageUp, 501 - 2 * page},
        Case{Qt::Key_Home, 0}}) {
    key(pressed);
    EXPECT_EQ(view.topRow(), (ChatRow{top, 0})) << pressed;
    EXPECT_TRUE(view.selection().empty());
  }
  const auto notch = static_cast<std::size_t>(QApplication::wheelScrollLines());
  wheel(-120);
  EXPECT_EQ(view.topRow().line, notch);
  for (int i = 0; i < 8; ++i) wheel(-15);
  EXPECT_EQ(view.topRow().line, 2 * notch) << "small steps add up";
}

TEST_F(ChatViewTest, TheFindBarFindsTellsAndGivesTheFocusBack) {
  appendLines(300);
  append("\xC9T\xC9 of line 2?\r\n");
  key(Qt::Key_F, Qt::ControlModifier);
  auto* bar = view.findChild<ChatFindBar*>();
  auto* edit = bar->findChild<QLineEdit*>();
  const auto* message = bar->findChild<QLabel*>();
  EXPECT_TRUE(edit->hasFocus());
  EXPECT_FALSE(bar->geometry().intersects(port->geometry()));
  EXPECT_TRUE(view.atEnd()) << "the bar took room from the view";

  view.select({0, 0}, {0, 0});
  QTest::keyClicks(edit, "LINE 2");
  EXPECT_EQ(view.selectedText(), "line 2");
  EXPECT_FALSE(view.characterRect({2, 0}).isNull()) << "scrolled to it";
  using Case = std::tuple<Qt::Key, Qt::KeyboardModifiers, TextPosition, const char*>;
  for (const auto& [pressed, modifiers, match, told] :
       {Case{Qt::Key_Return, Qt::NoModifier, {20, 0}, "2 of 112"},
        Case{Qt::Key_F3, Qt::NoModifier, {21, 0}, "3 of 112"},
        Case{Qt::Key_Return, Qt::ShiftModifier, {20, 0}, "2 of 112"},
        Case{Qt::Key_F3, Qt::ShiftModifier, {2, 0}, "1 of 112"},
        Case{Qt::Key_F3, Qt::ShiftModifier, {300, 7}, "112 of 112, from the end"},
        Case{Qt::Key_Return, Qt::NoModifier, {2, 0}, "1 of 112, from the start"}}) {
    QTest::keyClick(edit, pressed, modifiers);
    EXPECT_EQ(view.selection().begin, match);
    EXPECT_EQ(message->text(), told);
  }
  edit->setText(QString::fromUtf8("été"));
  EXPECT_EQ(view.selection().begin, (TextPosition{300, 0}));
  for (const char* nowhere : {"line 3000", "→"}) {
    edit->setText(QString::fromUtf8(nowhere));
    EXPECT_EQ(message->text(), "No match") << nowhere;
  }
  QTest::keyClick(edit, Qt::Key_Escape);
  EXPECT_TRUE(bar->isHidden());
  EXPECT_TRUE(view.hasFocus());
  EXPECT_EQ(port->geometry().bottom(), view.contentsRect().bottom());

  edit->setText("line 299");
  key(Qt::Key_F3);
  EXPECT_EQ(view.selection().begin, (TextPosition{299, 0})) << "F3 works without the bar";
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
}

TEST_F(ChatViewTest, ScreenReadersReadTextCursorAndPlaces) {
  append("one\r\ntwo words\r\nthr\351e");
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&view);
  EXPECT_TRUE(accessible->state().readOnly);
  QAccessibleTextInterface* reader = accessible->textInterface();
  EXPECT_EQ(reader->text(0, reader->characterCount()), QString("one\r\ntwo words\r\nthrée"));
  EXPECT_EQ(reader->text(4, 8), "\ntwo");
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

  // At an offset, by a unit: the text before it, at it and after it.
  using Case =
      std::tuple<int, QAccessible::TextBoundaryType, const char*, const char*, const char*>;
  for (const auto& [offset, unit, before, at, after] :
       {Case{5, QAccessible::CharBoundary, "\r\n", "t", "w"},
        Case{9, QAccessible::WordBoundary, " ", "words", "\r\n"},
        Case{9, QAccessible::LineBoundary, "one\r\n", "two words\r\n", "thrée"},
        Case{0, QAccessible::ParagraphBoundary, "", "one\r\n", "two words\r\n"},
        Case{21, QAccessible::LineBoundary, "two words\r\n", "thrée", ""}}) {
    EXPECT_EQ(reader->textBeforeOffset(offset, unit, &start, &end), QString(before));
    EXPECT_EQ(reader->textAfterOffset(offset, unit, &start, &end), QString(after));
    EXPECT_EQ(reader->textAtOffset(offset, unit, &start, &end), QString(at)) << offset;
    EXPECT_EQ(reader->text(start, end), QString(at));
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
  const auto took = [](auto action) {
    QElapsedTimer clock;
    clock.start();
    action();
    return clock.elapsed();
  };
  // Generous: these take milliseconds, the search tens; a pass over the layout takes a second.
  EXPECT_LT(took([&] { turn(); }), 200);
  EXPECT_LT(took([&] { view.resize(300, 250); }), 200);
  EXPECT_FALSE(view.characterRect(text.end()).isNull());
  EXPECT_LT(took([&] { port->repaint(); }), 200);
  view.verticalScrollBar()->setValue(kLines / 2);
  EXPECT_EQ(view.topRow(), (ChatRow{kLines / 2, 0}));
  EXPECT_LT(took([&] { append("needle\r\n"); }), 200);
  view.openFindBar();
  EXPECT_LT(took([&] { view.findChild<QLineEdit*>()->setText("NEEDLE"); }), 900);
  EXPECT_EQ(view.selection().begin, (TextPosition{kLines, 0}));
  QAccessibleTextInterface* reader = QAccessible::queryAccessibleInterface(&view)->textInterface();
  int start = 0;
  int end = 0;
  const auto readLines = [&] {
    for (int i = 0; i < 1'000; ++i) {
      reader->textAtOffset(i * 60'000, QAccessible::LineBoundary, &start, &end);
    }
  };
  EXPECT_LT(took(readLines), 500);
}

TEST_F(ChatViewTest, DrawsTextInItsColoursAndTheSelectionInItsOwn) {
  const auto brightest = [&](TextPosition place) {
    const QImage image = port->grab(view.characterRect(place)).toImage();
    QColor result(Qt::black);
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        if (image.pixelColor(x, y).value() > result.value()) result = image.pixelColor(x, y);
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
}  // namespace kelvaron::testing
