// The dialog that chooses a file: what it is told, and what comes of what the user types in it.
#include "desktop/ports/file_dialog.h"

#include <gmock/gmock.h>

#include <QDir>
#include <QLabel>
#include <fstream>

#include "platform/common_dialog.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

struct FileDesk : Desk {
  FileDesk() {
    std::filesystem::create_directory(home.path() / "sub");
    for (const char* name :
         {"doom2.wad", "bare", "\xC3\xA4.wad", "\xE2\x86\x92.wad", "sub/inner.wad"}) {
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
    for (const QChar letter : QString::fromUtf8(name))
      QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(letter), Qt::NoModifier);
    QTest::keyClick(edit, Qt::Key_Return);
  }

  TemporaryFolder home;
};

TEST(FileDialogs, WhereTheyStart) {
  const FileDesk desk;
  const QString here = QString::fromStdString(desk.home.path().string());
  struct Row {
    std::string told;
    QString before;
    QString start;
  };
  const Row rows[] = {
      {"", "", QDir::homePath()},
      {"", here + "/sub", here + "/sub"},
      {"", here + "/gone", QDir::homePath()},
      {desk.full("nowhere\\"), here, here},
      {desk.full("bare"), "", QDir::homePath()},
      {"C:\\GAMES\\", here, here},
      {"relative", "", QDir::homePath()},
      {desk.full(""), "/", here},
      {desk.full("sub\\"), "", here + "/sub"},
      {desk.full("sub//"), "", here + "/sub"},
      {"/", here, "/"},
  };
  for (const Row& row : rows) {
    QFileDialog dialog;
    prepareFileDialog(dialog, {{}, {}, row.told, {}}, row.before);
    EXPECT_EQ(dialog.directory().absolutePath(), row.start) << row.told;
  }
}

TEST(FileDialogs, WhichFilesTheyShow) {
  const std::pair<const char*, QStringList> rows[] = {
      {"", {"All files (*)"}},
      {"Final Doom (any)", {"Final Doom (any) (*)"}},
      {"*.WAD;*.txt", {"*.WAD *.txt (*.WAD *.txt)", "All files (*)"}},
  };
  for (const auto& [told, kinds] : rows) {
    QFileDialog dialog;
    prepareFileDialog(dialog, {{}, told, {}, {}}, {});
    EXPECT_EQ(dialog.nameFilters(), kinds);
  }
}

TEST(FileDialogs, WhatTheyGive) {
  FileDesk desk;
  struct Row {
    const char* typed;
    const char* given;
  };
  const Row rows[] = {
      {"doom2.wad", "doom2.wad"},
      {"doom2", "doom2.wad"},
      {"ä.wad", "\xE4.wad"},
      {"sub/inner", "sub/inner.wad"},
  };
  for (const Row& row : rows) {
    CommonDialog dialog;
    dialog.InitDir = desk.full("");
    dialog.DefaultExt = "wad";
    Desk::whenBoxOpens([&](QWidget& box) {
      FileDesk::type(box, row.typed);
      if (box.isVisible()) {
        ADD_FAILURE() << row.typed;
        box.close();
      }
    });
    EXPECT_TRUE(dialog.ShowOpen(desk.dialogs)) << row.typed;
    EXPECT_EQ(dialog.FileName, desk.full(row.given));
    EXPECT_EQ(dialog.FileTitle,
              std::string(row.given).substr(std::string(row.given).rfind('/') + 1));
  }
  CommonDialog dialog;
  dialog.FileName = "before";
  Desk::whenBoxOpens([&](QWidget& box) { box.close(); });
  EXPECT_FALSE(dialog.ShowOpen(desk.dialogs));
  EXPECT_EQ(dialog.FileName, "before");
}

// The code page lacks the arrow.
TEST(FileDialogs, ANameThatCannotBeToldIsRefusedAndAnotherCanBeChosen) {
  FileDesk desk;
  QString told;
  Desk::whenBoxOpens([&](QWidget& box) {
    FileDesk::type(box, "→.wad");
    Desk::whenBoxOpens([&](QWidget& refusal) {
      for (const QLabel* label : refusal.findChildren<QLabel*>()) told += label->text();
      QTest::keyClick(&refusal, Qt::Key_Return);
      Desk::whenBoxOpens([&](QWidget& again) { FileDesk::type(again, "doom2.wad"); });
    });
  });
  EXPECT_EQ(desk.dialogs.openFile({{}, {}, desk.full(""), {}}), desk.full("doom2.wad"));
  EXPECT_TRUE(told.contains("letters")) << told.toStdString();
}

TEST(FileDialogs, TheEndOfTheProgramClosesThem) {
  FileDesk desk;
  bool wentOn = false;
  QTimer::singleShot(0, [&] {
    Desk::whenBoxOpens(
        [&](QWidget&) { desk.edge.run([&] { desk.client->ports.application.End(); }); });
    desk.edge.run([&] {
      desk.dialogs.openFile({{}, {}, desk.full(""), {}});
      wentOn = true;
    });
  });
  EXPECT_EQ(QApplication::exec(), 0);
  EXPECT_FALSE(wentOn);
  for (const QWidget* window : QApplication::topLevelWidgets()) EXPECT_FALSE(window->isVisible());
}

}  // namespace
}  // namespace kelvaron::testing
