// Properties reach the widgets, and what the user does reaches the controls.
#include <gmock/gmock.h>

#include <QCheckBox>
#include <QClipboard>
#include <QMenu>
#include <QMenuBar>

#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

using Controls = FormTest<ManyControls>;

TEST_F(Controls, ShowPropertiesInTheNextTurn) {
  auto& name = widgetOf<QLineEdit>(form.name);
  auto& area = widgetOf<QPlainTextEdit>(form.area);
  auto& secret = widgetOf<QLineEdit>(form.secret);
  auto& tick = widgetOf<QCheckBox>(form.tick);
  auto& label = widgetOf<QLabel>(form.nameLabel);
  const QWidget& group = widgetOf(form.frame);

  using Row = std::tuple<const char*, std::function<void()>, std::function<bool()>>;
  const std::vector<Row> rows = {
      {"caption of the form", [&] { form.Caption = "B\xFCro"; },
       [&] { return window().windowTitle() == "Büro"; }},
      {"label", [&] { form.nameLabel.Caption = "<b>x</b>"; },
       [&] { return label.text() == "<b>x</b>" && label.textFormat() == Qt::PlainText; }},
      {"an \"&\" of somebody's", [&] { form.nameLabel.Caption = "R&D"; },
       [&] { return label.text() == "R&&D" && name.accessibleName() == "R&D"; }},
      {"colour",
       [&] {
         form.nameLabel.ForeColor = Color{1, 2, 3};
       },
       [&] { return label.palette().color(QPalette::WindowText) == QColor(1, 2, 3); }},
      {"text", [&] { form.name.Text = "\xA5zero\x80"; }, [&] { return name.text() == "¥zero€"; }},
      {"lines", [&] { form.area.Text = "a\r\nb\rc"; },
       [&] { return area.toPlainText() == "a\nb\nc"; }},
      {"mask", [&] { form.secret.Text = "abc"; }, [&] { return secret.displayText() == "***"; }},
      {"another mask", [&] { form.secret.PasswordChar = '\xA4'; },
       [&] { return secret.displayText() == "¤¤¤"; }},
      {"hidden frame", [&] { form.frame.Visible = false; }, [&] { return !tick.isVisible(); }},
      {"place", [&] { form.ok.Move(pixels(20, 220, 100, 40)); },
       [&] { return widgetOf(form.ok).geometry() == QRect(20, 220, 100, 40); }},
      {"gone", [&] { form.Visible = false; }, [&] { return !window().isVisible(); }}};
  EXPECT_EQ(name.geometry(), QRect(100, 10, 200, 25));
  EXPECT_EQ(tick.mapTo(&group, QPoint()), QPoint(10, 20));
  for (const auto& [what, change, shown] : rows) {
    EXPECT_FALSE(shown()) << what;
    change();
    turn();
    EXPECT_TRUE(shown()) << what;
  }
}

TEST(HiddenForms, HaveTimersAndNoWindow) {
  Desk desk;
  auto& form = desk.client->form<ManyControls>();
  int ticks = 0;
  form.timer.Tick = [&] { ++ticks; };
  form.timer.Enabled = true;
  QTest::qWait(60);
  EXPECT_EQ(desk.frame(form), nullptr);
  EXPECT_GT(ticks, 2);
}

TEST_F(Controls, AccessibleNames) {
  using Row = std::pair<const Control&, const char*>;
  for (const auto& [control, name] :
       {Row{form.name, "Name:"}, Row{form.area, "Notes"}, Row{form.people, "People"},
        Row{form.tick, "Tick"}, Row{form.frame, "Group"}, Row{form.ok, "Fine"}}) {
    EXPECT_EQ(told(widgetOf(control)), name);
  }
  EXPECT_EQ(widgetOf<QLabel>(form.nameLabel).buddy(), &widgetOf(form.name));
}

TEST_F(Controls, TypingIsInStepWithTheHandlers) {
  auto& edit = widgetOf<QLineEdit>(form.name);
  QTest::keyClicks(&edit, "abc");
  EXPECT_EQ(form.name.Text.get(), "abc");
  EXPECT_EQ(form.name.SelStart, 3);
  QTest::keyClick(&edit, Qt::Key_Home);
  EXPECT_EQ(form.name.SelStart, 0);

  form.name.Change = [&] {
    form.log.push_back(form.name.Text);
    form.name.SelStart = static_cast<int>(form.name.Text.get().size());
  };
  QTest::keyClicks(&edit, "x");
  EXPECT_EQ(form.name.Text.get(), "xabc");
  EXPECT_EQ(edit.cursorPosition(), 4);
  form.name.Change = [&] { form.name.Text = "other"; };
  QTest::keyClicks(&edit, "y");
  EXPECT_EQ(edit.text(), "other");
  EXPECT_THAT(form.log, ElementsAre("xabc"));
}

TEST_F(Controls, WhatTheCodePageLacksShowsAsQuestionMark) {
  auto& edit = widgetOf<QLineEdit>(form.name);
  QGuiApplication::clipboard()->setText(QStringLiteral("one\r\ntwo\nÄÖ€¥!→\U0001F600"));
  edit.paste();
  EXPECT_EQ(form.name.Text.get(), "one two \xC4\xD6\x80\xA5!??");
  EXPECT_EQ(edit.text(), QStringLiteral("one two ÄÖ€¥!??"));
  EXPECT_EQ(form.name.SelStart, 15);
}

TEST_F(Controls, TextOfSeveralLines) {
  auto& edit = widgetOf<QPlainTextEdit>(form.area);
  QTest::keyClicks(&edit, "ab");
  QTest::keyClick(&edit, Qt::Key_Return);
  QTest::keyClicks(&edit, QStringLiteral("c\u00A0"));
  EXPECT_EQ(form.area.Text.get(), "ab\r\nc\xA0");
  EXPECT_EQ(form.area.SelStart, 6);
}

TEST_F(Controls, LockedTextIsForReadingAndCopying) {
  for (TextBox* box : {&form.name, &form.area}) {
    SCOPED_TRACE(box->Name);
    QWidget& widget = widgetOf(*box);
    const auto base = [&] { return widget.palette().color(QPalette::Base); };
    const QColor typedIn = base();
    box->Text = "kept";
    box->Locked = true;
    turn();
    EXPECT_NE(base(), typedIn);
    QGuiApplication::clipboard()->clear();
    QTest::keyClicks(&widget, "x");
    for (const auto keys : {QKeySequence::SelectAll, QKeySequence::Copy, QKeySequence::Cut}) {
      QTest::keySequence(&widget, keys);
    }
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "kept");
    EXPECT_EQ(box->Text.get(), "kept");
    box->Locked = false;
    turn();
    QTest::keyClick(&widget, Qt::Key_End);
    QTest::keyClicks(&widget, "y");
    EXPECT_EQ(box->Text.get(), "kepty");
    EXPECT_EQ(base(), typedIn);
  }
}

TEST_F(Controls, EnterAndEscape) {
  form.name.KeyDown = [&](int key, int) { form.log.push_back("key " + std::to_string(key)); };
  form.people.DblClick = [&] { form.log.emplace_back("double"); };
  form.cancel.Cancel = true;
  QTest::keyClick(&widgetOf(form.name), Qt::Key_Return);
  QTest::keyClick(&widgetOf(form.people), Qt::Key_Enter);
  QTest::keyClick(&widgetOf(form.area), Qt::Key_Escape);
  EXPECT_THAT(form.log, ElementsAre("key 13", "double", "cancel"));

  form.log.clear();
  form.ok.Default = true;
  for (const Control* at : std::initializer_list<Control*>{&form.name, &form.area, &form.cancel}) {
    QTest::keyClick(&widgetOf(*at), Qt::Key_Return);
  }
  form.ok.Enabled = false;
  QTest::keyClick(&widgetOf(form.tick), Qt::Key_Return);
  EXPECT_THAT(form.log, ElementsAre("ok", "ok", "cancel"));
}

TEST_F(Controls, OrderOfEventsOfACheckBox) {
  const auto note = [&](const char* event) {
    form.log.push_back(event + std::to_string(form.tick.Value.get()));
  };
  form.tick.MouseDown = [&](MouseButton) { note("down "); };
  form.tick.Click = [&] { note("click "); };
  form.tick.MouseUp = [&](MouseButton) {
    note("up ");
    form.tick.Value = 1;
  };
  auto& box = widgetOf<QCheckBox>(form.tick);
  for (int i = 0; i < 2; ++i) {
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
  }
  EXPECT_TRUE(box.isChecked());
  QTest::keyClick(&box, Qt::Key_Space);
  EXPECT_THAT(form.log,
              ElementsAre("down 0", "click 1", "up 1", "down 1", "click 0", "up 0", "click 0"));
}

TEST_F(Controls, MenuBarAndPopUp) {
  const auto* bar = window().findChild<QMenuBar*>();
  ASSERT_EQ(bar->actions().size(), 2);
  EXPECT_TRUE(bar->actions()[0]->isVisible());
  EXPECT_FALSE(bar->actions()[1]->isVisible());

  const auto entries = bar->actions()[0]->menu()->actions();
  EXPECT_TRUE(entries[1]->isSeparator());
  EXPECT_FALSE(entries[2]->isEnabled());
  form.greyed.Enabled = true;
  EXPECT_TRUE(entries[2]->isEnabled());
  entries[0]->trigger();

  form.popped.Click = [&] { form.log.emplace_back("popped"); };
  form.PopupMenu(form.popUp);
  QMenu* menu = bar->actions()[1]->menu();
  EXPECT_TRUE(menu->isVisible());
  menu->actions()[0]->trigger();
  menu->close();
  EXPECT_THAT(form.log, ElementsAre("go", "popped"));
}

}  // namespace
}  // namespace kelvaron::testing
