// Windows come, go and end, from within their own handlers too.
#include <gmock/gmock.h>

#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>

#include "desktop/shell/theme.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

TEST(Windows, UnloadFromOwnHandler) {
  Desk desk;
  auto& form = desk.show<Plain>();
  const QPointer<QWidget> frame = desk.frame(form);
  form.button.Click = [&] {
    desk.client->slots.unload(form);
    EXPECT_FALSE(frame->isVisible());
    desk.client->MsgBox("still here");
    EXPECT_FALSE(frame.isNull()) << "its button is on the stack";
  };
  Desk::whenBoxOpens([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  desk.widget<QPushButton>(form, form.button).click();
  EXPECT_EQ(desk.client->loadedForm<Plain>(), nullptr);
  Desk::turn();
  EXPECT_TRUE(frame.isNull());
  EXPECT_NE(&desk.show<Plain>(), nullptr);
}

TEST(Windows, UnloadWhileItsOwnBoxIsOpen) {
  Desk desk;
  auto& form = desk.show<Plain>();
  const QPointer<QWidget> frame = desk.frame(form);
  form.button.Click = [&] { desk.client->MsgBox("asked from the window"); };
  Desk::whenBoxOpens([&](QWidget& box) {
    desk.edge.run([&] { desk.client->slots.unload(form); });
    Desk::turn();
    EXPECT_TRUE(box.isVisible());
    EXPECT_FALSE(frame.isNull());
    QTest::keyClick(&box, Qt::Key_Return);
  });
  desk.widget<QPushButton>(form, form.button).click();
  Desk::turn();
  EXPECT_TRUE(frame.isNull());
}

TEST(Windows, CloseButton) {
  for (const bool closable : {true, false}) {
    Desk desk;
    auto& form = desk.client->form<Plain>();
    form.ControlBox = closable;
    desk.show<Plain>();
    EXPECT_EQ(desk.frame(form)->windowFlags().testFlag(Qt::WindowCloseButtonHint), closable);
    desk.frame(form)->close();
    EXPECT_EQ(Plain::unloads, closable ? 1 : 0);
    EXPECT_EQ(desk.client->loadedForm<Plain>() == nullptr, closable);
  }
}

TEST(Windows, SizeAndResize) {
  Desk desk;
  auto& fixed = desk.show<Plain>();
  EXPECT_THAT(fixed.sizes, ElementsAre(Pair(3000, 1500)));
  EXPECT_EQ(desk.frame(fixed)->size(), QSize(200, 100));
  desk.frame(fixed)->resize(500, 500);
  Desk::turn();
  EXPECT_EQ(desk.frame(fixed)->size(), QSize(200, 100));
  desk.client->slots.unload(fixed);

  auto& form = desk.client->form<Plain>();
  form.Sizable = true;
  desk.show<Plain>();
  desk.frame(form)->resize(300, 120);
  Desk::turn();
  EXPECT_THAT(form.sizes, ElementsAre(Pair(3000, 1500), Pair(4500, 1800)));
  form.ScaleWidth = 3150;
  Desk::turn();
  EXPECT_EQ(desk.frame(form)->size(), QSize(210, 120));
}

TEST(Windows, LargerThanTheScreen) {
  Desk desk;
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  for (const bool sizable : {false, true}) {
    auto& form = desk.client->form<Plain>();
    form.Sizable = sizable;
    form.ScaleWidth = toTwips(screen.width() + 400);
    form.ScaleHeight = toTwips(screen.height() + 400);
    desk.show<Plain>();
    const QWidget& frame = *desk.frame(form);
    EXPECT_EQ(frame.size(), frame.size().boundedTo(screen));
    EXPECT_GT(frame.width(), screen.width() * 3 / 4);
    EXPECT_GT(frame.height(), screen.height() * 3 / 4);
    EXPECT_EQ(frame.findChild<QScrollArea*>() == nullptr, sizable);
    // The design's own size comes first, so that a layout measured there fits afterwards.
    EXPECT_EQ(form.sizes.front().first, toTwips(screen.width() + 400));
    EXPECT_EQ(form.sizes.size(), sizable ? 2U : 1U);
    desk.client->slots.unload(form);
  }
}

TEST(Windows, KeyboardGoesWhereItIsWanted) {
  Desk desk;
  auto& form = desk.client->form<ManyControls>();
  form.secret.SetFocus();
  desk.show<ManyControls>();
  EXPECT_EQ(desk.frame(form)->focusWidget(), &desk.widget(form, form.secret));
  form.tick.SetFocus();
  Desk::turn();
  EXPECT_EQ(desk.frame(form)->focusWidget(), &desk.widget(form, form.tick));

  auto& plain = desk.show<Plain>();
  EXPECT_EQ(desk.frame(plain)->focusWidget(), &desk.widget(plain, plain.button));
}

TEST(Windows, WhatComesByItselfLeavesTheKeyboard) {
  Desk desk;
  auto& typedIn = desk.show<ManyControls>();
  ASSERT_TRUE(QTest::qWaitForWindowActive(desk.frame(typedIn)));
  struct Row {
    const char* what;
    std::function<void(Form&)> bring;
    bool activates;
  };
  const std::vector<Row> rows = {
      {"from the network", [&](Form& form) { desk.edge.run([&] { form.Visible = true; }); }, false},
      {"for the user", [&](Form& form) { desk.gate.run([&] { form.Visible = true; }); }, true},
      {"to the front", [&](Form& form) { desk.edge.run([&] { form.Show(); }); }, true},
      {"quietly", [&](Form& form) { desk.gate.run([&] { form.ShowQuietly(); }); }, false},
  };
  for (const Row& row : rows) {
    auto& form = desk.client->form<Plain>();
    row.bring(form);
    QTest::qWait(50);
    ASSERT_TRUE(desk.frame(form)->isVisible()) << row.what;
    EXPECT_NE(desk.frame(form)->testAttribute(Qt::WA_ShowWithoutActivating), row.activates)
        << row.what;
    if (QGuiApplication::platformName() != "offscreen") {  // which activates whatever is shown
      EXPECT_TRUE(QTest::qWaitFor(
          [&] { return desk.frame(form)->isActiveWindow() == row.activates; }, 1000))
          << row.what;
    }
    desk.client->slots.unload(form);
    desk.frame(typedIn)->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(desk.frame(typedIn)));
  }
}

TEST(Windows, ShowOfAnOpenFormLeavesTheKeyboardUnlessAskedFor) {
  Desk desk;
  auto& open = desk.show<Plain>();
  auto& typedIn = desk.show<ManyControls>();
  ASSERT_TRUE(QTest::qWaitForWindowActive(desk.frame(typedIn)));
  for (int i = 0; i < 50; ++i) {
    desk.edge.run([&] {
      open.Show();
      open.ShowQuietly();
    });
    Desk::turn();
    ASSERT_TRUE(desk.frame(typedIn)->isActiveWindow()) << i;
  }
  desk.gate.run([&] { open.ShowQuietly(); });
  QTest::qWait(50);
  EXPECT_TRUE(desk.frame(typedIn)->isActiveWindow());
  desk.gate.run([&] { open.Show(); });
  EXPECT_TRUE(QTest::qWaitForWindowActive(desk.frame(open)));
}

TEST(Windows, DisabledTextLooksSo) {
  Desk desk;
  auto& form = desk.show<ManyControls>();
  form.ForeColor = Color{1, 2, 3};
  form.name.ForeColor = Color{1, 2, 3};
  Desk::turn();
  const QColor own(1, 2, 3);
  const std::pair<Control*, QPalette::ColorRole> rows[] = {{&form.name, QPalette::Text},
                                                           {&form.tick, QPalette::WindowText}};
  for (const auto& [control, role] : rows) {
    const QWidget& widget = desk.widget(form, *control);
    EXPECT_EQ(widget.palette().color(role), own) << control->Name;
    control->Enabled = false;
    Desk::turn();
    EXPECT_EQ(widget.palette().color(role), darkPalette().color(QPalette::Disabled, role))
        << control->Name;
  }
}

TEST(Boxes, StrangersTextIsPlainAndFitsTheScreen) {
  Desk desk;
  const std::string markup = "<b>bold</b> <img src='x'> & \xE4";
  const std::string longWord(30000, 'w');
  for (const std::string& text : {markup, longWord, std::string(5000, '\n') + "end"}) {
    Desk::whenBoxOpens([&](QWidget& box) {
      const QSize screen = box.screen()->availableSize();
      EXPECT_EQ(box.size(), box.size().boundedTo(screen));
      if (const auto* area = box.findChild<QPlainTextEdit*>()) {
        const bool cut = text.size() > 4096;
        EXPECT_EQ(area->toPlainText().toStdString(),
                  text.substr(0, 4096) + (cut ? " [\u2026]" : ""));
      } else {
        const auto labels = box.findChildren<QLabel*>();
        EXPECT_EQ(labels.back()->text(), QStringLiteral("<b>bold</b> <img src='x'> & ä"));
        EXPECT_EQ(labels.back()->textFormat(), Qt::PlainText);
      }
      EXPECT_EQ(box.windowTitle(), "Title");
      QTest::keyClick(&box, Qt::Key_Return);
    });
    desk.client->MsgBox(text, box_style::kCritical, "Title");
  }
}

TEST(Boxes, OneAtATime) {
  Desk desk;
  std::vector<std::string> seen;
  Desk::whenBoxOpens([&](QWidget& first) {
    Desk::whenBoxOpens([&](QWidget& stillFirst) {
      EXPECT_EQ(&stillFirst, &first) << "the other waits";
      Desk::whenBoxOpens([&](QWidget& second) {
        seen.push_back(second.windowTitle().toStdString());
        QTest::keyClick(&second, Qt::Key_Return);
      });
      seen.push_back(first.windowTitle().toStdString());
      QTest::keyClick(&first, Qt::Key_Return);
    });
    desk.client->MsgBox("b", box_style::kPlain, "second");
  });
  desk.client->MsgBox("a", box_style::kPlain, "first");
  EXPECT_EQ(seen, (std::vector<std::string>{"first", "second"}));
}

TEST(Boxes, WhatComesByItselfTakesNoKeyAtFirstAndHasAWayOut) {
  Desk desk;
  Desk::whenBoxOpens([&](QWidget& first) {
    // The time begins when the box shows, which has to wait for its turn.
    QTimer::singleShot(700, &first, [&first] {
      Desk::whenBoxOpens([](QWidget& box) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) {
          QTest::keyClick(QApplication::focusWidget(), key);
          ASSERT_TRUE(box.isVisible());
        }
        QTimer::singleShot(600, &box, [&box] {
          for (auto* button : box.findChildren<QPushButton*>()) {
            if (button->text() == "Disconnect") button->click();
          }
        });
      });
      first.close();
    });
    EXPECT_EQ(desk.dialogs.show({.text = "x", .unasked = true, .offersDisconnect = true}),
              BoxAnswer::disconnect);
  });
  desk.client->MsgBox("first");
}

TEST(Boxes, Input) {
  Desk desk;
  const auto ask = [&](Qt::Key last) {
    Desk::whenBoxOpens([last](QWidget& box) {
      auto* edit = box.findChild<QLineEdit*>();
      EXPECT_EQ(edit->selectedText(), "before");
      edit->insert(QStringLiteral("né→w"));
      QTest::keyClick(edit, last);
    });
    return desk.dialogs.InputBox("Who?", "Ask", "before");
  };
  EXPECT_EQ(ask(Qt::Key_Return), "n\xE9?w");
  EXPECT_EQ(ask(Qt::Key_Escape), "");
}

TEST(Boxes, QuestionIsNoUnlessYesIsSaid) {
  Desk desk;
  struct Row {
    std::function<void(QWidget&)> answer;
    bool agreed;
  };
  const Row rows[] = {
      {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); }, false},
      {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }, false},
      {[](QWidget& box) { box.close(); }, false},
      {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_Y, Qt::AltModifier); }, true},
      {[](QWidget& box) { QTest::keyClick(&box, Qt::Key_N, Qt::AltModifier); }, false},
  };
  for (const Row& row : rows) {
    Desk::whenBoxOpens([&](QWidget& box) {
      EXPECT_FALSE(box.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
      EXPECT_TRUE(QTest::qWaitForWindowActive(&box));  // mnemonics work in there alone
      row.answer(box);
    });
    EXPECT_EQ(desk.client->confirm("Sure?"), row.agreed);
  }
}

TEST(Boxes, FaultOfAHandlerIsTold) {
  Desk desk;
  auto& form = desk.show<Plain>();
  form.button.Click = [] { throw Fault(fault_number::kOverflow, "Overflow it is"); };
  std::string told;
  Desk::whenBoxOpens([&](QWidget& box) {
    told = box.findChildren<QLabel*>().back()->text().toStdString();
    QTest::keyClick(&box, Qt::Key_Return);
  });
  desk.widget<QPushButton>(form, form.button).click();
  EXPECT_EQ(told, "Overflow it is");
}

TEST(End, ClosesOpenBoxesAndGoesNoFurther) {
  Desk desk;
  bool wentOn = false;
  QTimer::singleShot(0, [&] {
    auto& form = desk.show<Plain>();
    form.button.Click = [&] {
      desk.client->MsgBox("outer");
      wentOn = true;
    };
    Desk::whenBoxOpens([&](QWidget&) {
      // While the inner one waits for its turn.
      QTimer::singleShot(20, [&] { desk.edge.run([&] { desk.client->ports.application.End(); }); });
      desk.edge.run([&] {
        desk.client->MsgBox("inner");
        wentOn = true;
      });
    });
    desk.widget<QPushButton>(form, form.button).click();
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(desk.edge.ended());
  EXPECT_FALSE(wentOn);
  for (const QWidget* window : QApplication::topLevelWidgets()) EXPECT_FALSE(window->isVisible());
  EXPECT_THROW(desk.client->MsgBox("too late"), ProgramEnd);
}

}  // namespace
}  // namespace kelvaron::testing
