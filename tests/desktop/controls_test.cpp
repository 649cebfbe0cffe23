// Properties reach the widgets, and what the user does reaches the controls.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>

#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

TEST(ControlsShow, PropertiesInTheNextTurn) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  const QWidget& frame = *desk.frame(form);
  auto& name = desk.widget<QLineEdit>(form, form.name);
  auto& area = desk.widget<QPlainTextEdit>(form, form.area);
  auto& tick = desk.widget<QCheckBox>(form, form.tick);
  auto& label = desk.widget<QLabel>(form, form.nameLabel);

  struct Row {
    const char* what;
    std::function<void()> change;
    std::function<bool()> shown;
  };
  const std::vector<Row> rows = {
      {"caption of the form", [&] { form.Caption = "B\xFCro"; },
       [&] { return frame.windowTitle() == QStringLiteral("Büro"); }},
      {"label", [&] { form.nameLabel.Caption = "<b>x</b>"; },
       [&] { return label.text() == "<b>x</b>" && label.textFormat() == Qt::PlainText; }},
      {"an \"&\" of somebody's", [&] { form.nameLabel.Caption = "R&D"; },
       [&] { return label.text() == "R&&D" && name.accessibleName() == "R&D"; }},
      {"colour",
       [&] {
         form.nameLabel.ForeColor = Color{1, 2, 3};
       },
       [&] { return label.palette().color(QPalette::WindowText) == QColor(1, 2, 3); }},
      {"text", [&] { form.name.Text = "\xA5zero\x80"; },
       [&] { return name.text() == QStringLiteral("¥zero€"); }},
      {"lines", [&] { form.area.Text = "a\r\nb\rc"; },
       [&] { return area.toPlainText() == "a\nb\nc"; }},
      {"locked", [&] { form.name.Locked = true; }, [&] { return name.isReadOnly(); }},
      {"mask", [&] { form.secret.Text = "abc"; },
       [&] { return desk.widget<QLineEdit>(form, form.secret).displayText() == "***"; }},
      {"another mask", [&] { form.secret.PasswordChar = '\xA4'; },
       [&] {
         return desk.widget<QLineEdit>(form, form.secret).displayText() == QStringLiteral("¤¤¤");
       }},
      {"caret", [&] { form.name.SelStart = 2; }, [&] { return name.cursorPosition() == 2; }},
      {"tick", [&] { form.tick.Value = 1; }, [&] { return tick.isChecked(); }},
      {"disabled", [&] { form.tick.Enabled = false; }, [&] { return !tick.isEnabled(); }},
      {"hidden frame", [&] { form.frame.Visible = false; }, [&] { return !tick.isVisible(); }},
      {"place",
       [&] {
         form.ok.Move({300, 3300, 1500, 600});
       },
       [&] { return desk.widget(form, form.ok).geometry() == QRect(20, 220, 100, 40); }},
      {"pointer", [&] { form.MousePointer_ = MousePointer::hourglass; },
       [&] { return desk.widget(form, form.frame).parentWidget()->cursor() == Qt::WaitCursor; }},
      {"size", [&] { form.ScaleWidth = 7500; },
       [&] { return desk.widget(form, form.frame).parentWidget()->width() == 500; }},
      {"gone", [&] { form.Visible = false; }, [&] { return !frame.isVisible(); }},
  };
  EXPECT_EQ(name.geometry(), QRect(100, 10, 200, 25));
  EXPECT_EQ(tick.mapTo(&desk.widget(form, form.frame), QPoint()), QPoint(10, 20));
  for (const Row& row : rows) {
    EXPECT_FALSE(row.shown()) << row.what;
    row.change();
    Desk::turn();
    EXPECT_TRUE(row.shown()) << row.what;
  }
}

TEST(ControlsShow, NothingWhileHidden) {
  Desk desk;
  auto& form = desk.client->form<ManyControls>();
  form.timer.Tick = [&] { form.log.emplace_back("tick"); };
  Desk::turn();
  EXPECT_EQ(desk.frame(form), nullptr);

  form.timer.Enabled = true;
  QTest::qWait(60);
  form.timer.Enabled = false;
  const auto ticks = form.log.size();
  EXPECT_GT(ticks, 2U);
  QTest::qWait(30);
  EXPECT_EQ(form.log.size(), ticks);
}

TEST(ControlsShow, AccessibleNames) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  const auto nameOf = [&](const Control& control) {
    return QAccessible::queryAccessibleInterface(&desk.widget(form, control))
        ->text(QAccessible::Name)
        .toStdString();
  };
  EXPECT_EQ(nameOf(form.name), "Name:");
  EXPECT_EQ(nameOf(form.area), "Notes");
  EXPECT_EQ(nameOf(form.people), "People");
  EXPECT_EQ(nameOf(form.tick), "Tick");
  EXPECT_EQ(nameOf(form.frame), "Group");
  EXPECT_EQ(nameOf(form.ok), "Fine");
  EXPECT_EQ(desk.widget<QLabel>(form, form.nameLabel).buddy(), &desk.widget(form, form.name));
}

TEST(TextBoxes, TypingIsInStepWithTheHandlers) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  auto& edit = desk.widget<QLineEdit>(form, form.name);
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
  EXPECT_THAT(form.log, ElementsAre("resize 6000x4500", "xabc"));
}

TEST(TextBoxes, WhatTheCodePageLacksShowsAsQuestionMark) {
  struct Row {
    const char16_t* pasted;
    const char* bytes;
    const char16_t* shown;
  };
  const Row rows[] = {
      {u"one\r\ntwo\nthree", "one two three", u"one two three"},
      {u"ÄÖ€¥", "\xC4\xD6\x80\xA5", u"ÄÖ€¥"},
      {u"a→b", "a?b", u"a?b"},
      {u"\xD83D\xDE00!", "?!", u"?!"},
  };
  for (const Row& row : rows) {
    Desk desk;
    auto& form = desk.show<ManyControls>();
    auto& edit = desk.widget<QLineEdit>(form, form.name);
    QGuiApplication::clipboard()->setText(QString::fromUtf16(row.pasted));
    edit.paste();
    EXPECT_EQ(form.name.Text.get(), row.bytes);
    EXPECT_EQ(edit.text(), QString::fromUtf16(row.shown));
    EXPECT_EQ(form.name.SelStart, static_cast<int>(form.name.Text.get().size()));
  }
}

TEST(TextBoxes, SeveralLines) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  auto& edit = desk.widget<QPlainTextEdit>(form, form.area);
  QTest::keyClicks(&edit, "ab");
  QTest::keyClick(&edit, Qt::Key_Return);
  QTest::keyClicks(&edit, QStringLiteral("c\u00A0"));
  EXPECT_EQ(form.area.Text.get(), "ab\r\nc\xA0");
  EXPECT_EQ(form.area.SelStart, 6);
}

TEST(TextBoxes, LockedOnesAreForReadingAndCopying) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  for (TextBox* box : {&form.name, &form.area}) {
    QWidget& widget = desk.widget(form, *box);
    const QColor typedIn = widget.palette().color(QPalette::Base);
    box->Text = "kept";
    box->Locked = true;
    Desk::turn();
    EXPECT_NE(widget.palette().color(QPalette::Base), typedIn) << box->Name;
    QGuiApplication::clipboard()->clear();
    QTest::keyClicks(&widget, "x");
    QTest::keySequence(&widget, QKeySequence::SelectAll);
    QTest::keySequence(&widget, QKeySequence::Copy);
    QTest::keySequence(&widget, QKeySequence::Cut);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "kept") << box->Name;
    EXPECT_EQ(box->Text.get(), "kept");
    box->Locked = false;
    Desk::turn();
    QTest::keyClick(&widget, Qt::Key_End);
    QTest::keyClicks(&widget, "y");
    EXPECT_EQ(box->Text.get(), "kepty");
    EXPECT_EQ(widget.palette().color(QPalette::Base), typedIn);
  }
}

TEST(TextBoxes, EnterAndEscape) {
  Desk desk;
  auto& form = desk.client->form<ManyControls>();
  form.log.clear();
  form.name.KeyDown = [&](int key, int) { form.log.push_back("key " + std::to_string(key)); };
  form.people.DblClick = [&] { form.log.emplace_back("double"); };
  form.cancel.Cancel = true;
  desk.show<ManyControls>();
  form.log.clear();
  QTest::keyClick(&desk.widget(form, form.name), Qt::Key_Return);
  QTest::keyClick(&desk.widget(form, form.people), Qt::Key_Enter);
  QTest::keyClick(&desk.widget(form, form.area), Qt::Key_Escape);
  EXPECT_THAT(form.log, ElementsAre("key 13", "double", "cancel"));

  form.log.clear();
  form.ok.Default = true;
  QTest::keyClick(&desk.widget(form, form.name), Qt::Key_Return);
  QTest::keyClick(&desk.widget(form, form.area), Qt::Key_Return);
  QTest::keyClick(&desk.widget(form, form.cancel), Qt::Key_Return);
  form.ok.Enabled = false;
  QTest::keyClick(&desk.widget(form, form.tick), Qt::Key_Return);
  EXPECT_THAT(form.log, ElementsAre("ok", "ok", "cancel"));
}

TEST(CheckBoxes, OrderOfEvents) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  form.log.clear();
  const auto note = [&](const char* event) {
    return form.log.push_back(event + std::to_string(form.tick.Value.get()));
  };
  form.tick.MouseDown = [&](MouseButton) { note("down "); };
  form.tick.Click = [&] { note("click "); };
  form.tick.MouseUp = [&](MouseButton) {
    note("up ");
    form.tick.Value = 1;
  };
  auto& box = desk.widget<QCheckBox>(form, form.tick);
  const QPoint onTick(8, box.height() / 2);
  QTest::mouseClick(&box, Qt::LeftButton, {}, onTick);
  QTest::mouseClick(&box, Qt::LeftButton, {}, onTick);
  EXPECT_THAT(form.log, ElementsAre("down 0", "click 1", "up 1", "down 1", "click 0", "up 0"));
  EXPECT_TRUE(box.isChecked());
  form.log.clear();
  QTest::keyClick(&box, Qt::Key_Space);
  EXPECT_THAT(form.log, ElementsAre("click 0"));
}

TEST(Menus, BarAndPopUp) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  form.log.clear();
  const QWidget& frame = *desk.frame(form);
  const auto* bar = frame.findChild<QMenuBar*>();
  ASSERT_NE(bar, nullptr);
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
