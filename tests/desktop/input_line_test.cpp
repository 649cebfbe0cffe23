// The room's line of input: completion, history, and what its keys do to the chat view.

#include <QProcess>
#include <QStyleHints>

#include "chat/main_window.h"
#include "desktop/chat_view/chat_view.h"
#include "desktop/controls/line_history.h"
#include "desktop/shell/caret_rest.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

TEST(LineHistory, UpAndDown) {
  LineHistory history;
  EXPECT_FALSE(history.older("begun"));
  for (const char* sent : {"one", "two", "two", "three"}) history.add(sent);
  QString shown = "begun";
  for (const char* sent : {"three", "two", "one"}) {
    EXPECT_EQ(history.older(std::exchange(shown, sent)), sent);
  }
  EXPECT_FALSE(history.older(shown));
  for (const char* sent : {"two", "three", "begun"}) EXPECT_EQ(history.newer(), sent);
  EXPECT_FALSE(history.newer());
  for (int i = 0; i < 200; ++i) history.add(QString::number(i));
  int kept = 0;
  while (history.older("")) ++kept;
  EXPECT_EQ(kept, LineHistory::kMost);
}

class InputLine : public FormTest<frmMain> {
 protected:
  InputLine() {
    form.Label1.Caption = "bob";
    for (const char* user : {"ann[IG]", "Anna", "bob"}) form.List1.AddItem(user);
    for (int i = 0; i < 300; ++i) form.AppendChat("line " + std::to_string(i));
    QTest::qWait(30);
    window().activateWindow();
    edit.setFocus();
  }
  void key(Qt::Key each, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(&edit, each, modifiers);
    QTest::qWait(1);
  }

  QLineEdit& edit = widgetOf<QLineEdit>(form.txtinput);
  ChatView& chat = widgetOf<ChatView>(form.txtOutput);
};

TEST_F(InputLine, TabCompletesNicknamesOfTheList) {
  QTest::keyClicks(&edit, "an");
  key(Qt::Key_Tab);
  EXPECT_EQ(edit.text(), "Anna: ");
  key(Qt::Key_Tab);
  EXPECT_EQ(form.txtinput.Text.get(), "ann: ") << "the control knows";
  edit.clear();
  key(Qt::Key_Tab);
  EXPECT_FALSE(edit.hasFocus()) << "on an empty line it moves on";
}

TEST_F(InputLine, KeysReachTheChatView) {
  const ChatRow end = chat.topRow();
  key(Qt::Key_PageUp);
  EXPECT_LT(chat.topRow(), end);
  form.AppendChat("below");
  QTest::qWait(30);
  const auto* below = chat.findChild<QPushButton*>();
  EXPECT_TRUE(below->isVisible());
  EXPECT_EQ(below->text(), "1 new line");
  key(Qt::Key_Escape);
  EXPECT_TRUE(chat.atEnd());
  EXPECT_FALSE(below->isVisible());
  const int size = chat.fontSize();
  key(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(chat.fontSize(), size + 1);
  key(Qt::Key_F, Qt::ControlModifier);
  EXPECT_FALSE(edit.hasFocus()) << "the find bar has the keyboard";
}

TEST_F(InputLine, AMistypedCommandIsMarked) {
  const QColor usual = edit.palette().color(QPalette::Text);
  QTest::keyClicks(&edit, "/pm ann");
  EXPECT_EQ(edit.toolTip(), "/pm is no command and will be said to everybody");
  EXPECT_NE(edit.palette().color(QPalette::Text), usual);
  edit.setText("/pi");
  key(Qt::Key_Tab);
  EXPECT_EQ(edit.text(), "/PING ");
  EXPECT_EQ(edit.toolTip(), "");
  EXPECT_EQ(edit.palette().color(QPalette::Text), usual);
}

TEST_F(InputLine, WhatIsTooLongIsRefusedWithASentence) {
  QTest::keyClicks(&edit, "before");
  whenBoxOpens([](QWidget& box) { box.close(); });
  edit.insert(QString(70'000, 'x'));
  QTest::qWait(100);
  EXPECT_EQ(edit.text(), "before");
}

TEST_F(InputLine, LinesForTheUserAreMarked) {
  form.Label1.Caption =
      "\xA5"
      "bob";
  for (const bool forUser : {true, false}) {
    const std::size_t line = chat.notes().wholeLines();
    form.AppendChat(forUser ? "ann: hi BOB, ready?" : "ann: hi all");
    QTest::qWait(20);
    EXPECT_EQ(chat.notes().isMarked(line), forUser);
  }
}

// Where a window manager marks it, while another program has the keyboard.
TEST_F(InputLine, ALineForTheUserCallsForAttention) {
  if (QGuiApplication::platformName() != "xcb") GTEST_SKIP() << "needs a window manager";
  const QString id = QString::number(window().winId());
  const auto run = [](const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return process.readAllStandardOutput();
  };
  const auto calls = [&] {
    QTest::qWait(100);
    return run("xprop", {"-id", id, "_NET_WM_STATE"}).contains("DEMANDS_ATTENTION");
  };
  // A window of another program, which gets the keyboard as new windows do.
  QProcess other;
  other.start("xev", QStringList());
  ASSERT_TRUE(QTest::qWaitFor(
      [] { return QApplication::applicationState() != Qt::ApplicationActive; }, 2000));
  form.AppendChat("ann: hi all");
  EXPECT_FALSE(calls());
  form.AppendChat("ann: hi bob");
  EXPECT_TRUE(calls());
  run("xdotool", {"windowactivate", "--sync", id});
  EXPECT_FALSE(calls()) << "it was looked at";
}

TEST_F(InputLine, ItsCaretStandsStillWhereNobodyTypes) {
  const int blinking = QGuiApplication::styleHints()->cursorFlashTime();
  ASSERT_GT(blinking, 0);
  const CaretRest rest(std::chrono::milliseconds(30));
  const auto flashes = [] { return QGuiApplication::styleHints()->cursorFlashTime(); };
  EXPECT_TRUE(QTest::qWaitFor([&] { return flashes() == 0; }, 2000));
  key(Qt::Key_A);
  EXPECT_EQ(flashes(), blinking);
  EXPECT_TRUE(QTest::qWaitFor([&] { return flashes() == 0; }, 2000));
}

}  // namespace
}  // namespace kelvaron::testing
