// Boxes and the dialog that chooses a file: what they show, and what comes of what the user does.

#include <QDir>
#include <QScreen>
#include <fstream>

#include "desktop/ports/file_dialog.h"
#include "platform/common_dialog.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

class FileDialogs : public ::testing::Test, protected Desk {
 protected:
  FileDialogs() {
    std::filesystem::create_directory(home.path() / "sub");
    for (const char* name : {"doom2.wad", "bare", "ä.wad", "→.wad", "sub/inner.wad"}) {
      std::ofstream(home.path() / name) << "x";
    }
  }
  /// The full name as the core tells it.
  std::string full(const std::string& name) const { return home.path().string() + "/" + name; }

  /// Types where the keyboard is when the dialog has come up.
  static void type(QWidget& box, const char* name) {
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return box.isActiveWindow() && box.focusWidget() != nullptr; }, 2000));
    QWidget* edit = box.focusWidget();
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    for (const QChar letter : QString::fromUtf8(name)) {
      QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    }
    QTest::keyClick(edit, Qt::Key_Return);
  }

  TemporaryFolder home;
};

TEST_F(FileDialogs, WhereTheyStart) {
  const QString here = QString::fromStdString(home.path().string());
  const QString usual = QDir::homePath();
  using Row = std::tuple<std::string, QString, QString>;
  for (const auto& [told, before, start] :
       {Row{"", "", usual}, Row{"", here + "/sub", here + "/sub"}, Row{"", here + "/gone", usual},
        Row{full("nowhere\\"), here, here}, Row{full("bare"), "", usual},
        Row{"C:\\GAMES\\", here, here}, Row{"relative", "", usual}, Row{full(""), "/", here},
        Row{full("sub\\"), "", here + "/sub"}, Row{full("sub//"), "", here + "/sub"},
        Row{"/", here, "/"}}) {
    QFileDialog dialog;
    prepareFileDialog(dialog, {{}, {}, told, {}}, before);
    EXPECT_EQ(dialog.directory().absolutePath(), start) << told;
  }
}

TEST_F(FileDialogs, WhichFilesTheyShow) {
  using Row = std::pair<const char*, QStringList>;
  for (const auto& [told, kinds] :
       {Row{"", {"All files (*)"}}, Row{"Final Doom (any)", {"Final Doom (any) (*)"}},
        Row{"*.WAD;*.txt", {"*.WAD *.txt (*.WAD *.txt)", "All files (*)"}}}) {
    QFileDialog dialog;
    prepareFileDialog(dialog, {{}, told, {}, {}}, {});
    EXPECT_EQ(dialog.nameFilters(), kinds);
  }
}

TEST_F(FileDialogs, WhatTheyGive) {
  CommonDialog dialog;
  dialog.FileName = "before";
  whenBoxOpens([&](QWidget& box) { box.close(); });
  EXPECT_FALSE(dialog.ShowOpen(dialogs));
  EXPECT_EQ(dialog.FileName, "before");
  dialog.InitDir = full("");
  dialog.DefaultExt = "wad";
  using Row = std::tuple<const char*, std::string, std::string>;
  for (const auto& [typed, folder, name] :
       {Row{"doom2.wad", "", "doom2.wad"}, Row{"doom2", "", "doom2.wad"},
        Row{"ä.wad", "", "\xE4.wad"}, Row{"sub/inner", "sub/", "inner.wad"}}) {
    whenBoxOpens([words = typed](QWidget& box) {
      type(box, words);
      if (box.isVisible()) {
        ADD_FAILURE() << words;
        box.close();
      }
    });
    EXPECT_TRUE(dialog.ShowOpen(dialogs)) << typed;
    EXPECT_EQ(dialog.FileName, full(folder + name));
    EXPECT_EQ(dialog.FileTitle, name);
  }
}

// The code page lacks the arrow.
TEST_F(FileDialogs, ANameThatCannotBeToldIsRefusedAndAnotherCanBeChosen) {
  QString told;
  whenBoxOpens([&](QWidget& box) {
    type(box, "→.wad");
    whenBoxOpens([&](QWidget& refusal) {
      for (const QLabel* label : refusal.findChildren<QLabel*>()) told += label->text();
      QTest::keyClick(&refusal, Qt::Key_Return);
      whenBoxOpens([&](QWidget& again) { type(again, "doom2.wad"); });
    });
  });
  EXPECT_EQ(dialogs.openFile({{}, {}, full(""), {}}), full("doom2.wad"));
  EXPECT_TRUE(told.contains("letters")) << told.toStdString();
}

class Boxes : public ::testing::Test, protected Desk {};

TEST_F(Boxes, StrangersTextIsPlainAndFitsTheScreen) {
  const std::string markup = "<b>bold</b> <img src='x'> & \xE4";
  for (const std::string& text :
       {markup, std::string(30'000, 'w'), std::string(5'000, '\n') + "end"}) {
    whenBoxOpens([&](QWidget& box) {
      EXPECT_EQ(box.size(), box.size().boundedTo(box.screen()->availableSize()));
      if (const auto* area = box.findChild<QPlainTextEdit*>()) {
        EXPECT_EQ(area->toPlainText().toStdString(), text.substr(0, 4096) + " […]");
      } else {
        const auto labels = box.findChildren<QLabel*>();
        EXPECT_EQ(labels.back()->text(), "<b>bold</b> <img src='x'> & ä");
        EXPECT_EQ(labels.back()->textFormat(), Qt::PlainText);
      }
      EXPECT_EQ(box.windowTitle(), "Title");
      QTest::keyClick(&box, Qt::Key_Return);
    });
    gate.run([&] { client->MsgBox(text, box_style::kCritical, "Title"); });
  }
}

TEST_F(Boxes, WhatComesByItselfTakesNoKeyAtFirstAndHasAWayOut) {
  whenBoxOpens([&](QWidget& first) {
    // One shows at a time; the time of the second begins when it shows.
    QTimer::singleShot(700, &first, [&first] {
      whenBoxOpens([](QWidget& box) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) {
          QTest::keyClick(box.focusWidget(), key);
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
    EXPECT_EQ(dialogs.show({.text = "x", .unasked = true, .offersDisconnect = true}),
              BoxAnswer::disconnect);
  });
  client->MsgBox("first");
}

TEST_F(Boxes, Input) {
  using Row = std::pair<Qt::Key, const char*>;
  for (const auto& [last, given] : {Row{Qt::Key_Return, "n\xE9?w"}, Row{Qt::Key_Escape, ""}}) {
    whenBoxOpens([key = last](QWidget& box) {
      auto* edit = box.findChild<QLineEdit*>();
      EXPECT_EQ(edit->selectedText(), "before");
      edit->insert("né→w");
      QTest::keyClick(edit, key);
    });
    EXPECT_EQ(dialogs.InputBox("Who?", "Ask", "before"), given);
  }
}

TEST_F(Boxes, QuestionIsNoUnlessYesIsSaid) {
  // Without a key, the box is closed by its frame.
  using Row = std::tuple<Qt::Key, Qt::KeyboardModifiers, bool>;
  for (const auto& [key, modifiers, agreed] :
       {Row{Qt::Key_Return, {}, false}, Row{Qt::Key_Escape, {}, false}, Row{{}, {}, false},
        Row{Qt::Key_Y, Qt::AltModifier, true}, Row{Qt::Key_N, Qt::AltModifier, false}}) {
    whenBoxOpens([pressed = key, with = modifiers](QWidget& box) {
      EXPECT_FALSE(box.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
      EXPECT_TRUE(QTest::qWaitForWindowActive(&box));  // mnemonics work in there alone
      if (pressed == Qt::Key()) {
        box.close();
      } else {
        QTest::keyClick(&box, pressed, with);
      }
    });
    bool answer = false;
    gate.run([&] { answer = client->confirm("Sure?"); });
    EXPECT_EQ(answer, agreed);
  }
}

TEST_F(Boxes, TheEndClosesThemAndGoesNoFurther) {
  bool wentOn = false;
  const auto ask = [&](const char* text) {
    client->MsgBox(text);
    wentOn = true;
  };
  QTimer::singleShot(0, [&] {
    auto& form = show<Plain>();
    form.button.Click = [&] { ask("outer"); };
    whenBoxOpens([&](QWidget&) {
      // While the inner one waits for its turn.
      QTimer::singleShot(20, [&] { edge.run([&] { client->ports.application.End(); }); });
      edge.run([&] { ask("inner"); });
    });
    widget<QPushButton>(form, form.button).click();
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_TRUE(edge.ended());
  EXPECT_FALSE(wentOn);
  for (const QWidget* window : QApplication::topLevelWidgets()) EXPECT_FALSE(window->isVisible());
  EXPECT_THROW(client->MsgBox("too late"), ProgramEnd);
}

}  // namespace
}  // namespace kelvaron::testing
