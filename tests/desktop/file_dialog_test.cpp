// The dialog that chooses a file.
#include <gmock/gmock.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <fstream>

#include "platform/common_dialog.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

FileDialog in(const std::string& folder, const std::string& filter = {},
              const std::string& title = {}) {
  return {title, filter, folder, {}};
}

struct FileDesk : Desk {
  FileDesk() {
    std::filesystem::create_directory(home.path() / "sub");
    for (const char* name : {"DOOM.WAD", "doom2.wad", "readme.txt", "bare", "\xC3\xA4.wad",
                             "\xE2\x86\x92.wad", "sub/inner.wad"}) {
      std::ofstream(home.path() / name) << "x";
    }
  }
  /// The full name as the core tells it.
  std::string full(const std::string& name) const { return home.path().string() + "/" + name; }

  /// Opens the dialog and runs `act` on it, once it is open; leaves it by Escape if it is still.
  std::optional<std::string> open(const FileDialog& dialog,
                                  const std::function<void(QFileDialog&)>& act) {
    whenBoxOpens([&](QWidget& box) {
      act(dynamic_cast<QFileDialog&>(box));
      if (box.isVisible()) QTest::keyClick(&box, Qt::Key_Escape);
    });
    return dialogs.openFile(dialog);
  }
  enum class Last { enter, button };
  static void type(QFileDialog& box, const QString& name, Last last = Last::enter) {
    auto& edit = *box.findChild<QLineEdit*>("fileNameEdit");
    box.activateWindow();
    edit.setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return edit.hasFocus(); }, 2000));
    edit.selectAll();
    edit.insert(name);
    if (last == Last::enter) {
      QTest::keyClick(&edit, Qt::Key_Return);
    } else {
      QTest::mouseClick(box.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open),
                        Qt::LeftButton);
    }
  }

  TemporaryFolder home;
};

TEST(FileDialogs, WhereTheyStart) {
  FileDesk desk;
  const QString here = QString::fromStdString(desk.home.path().string());
  const auto startOf = [&](const std::string& told) {
    QString folder;
    EXPECT_EQ(
        desk.open(in(told), [&](QFileDialog& box) { folder = box.directory().absolutePath(); }),
        std::nullopt);
    return folder;
  };
  const std::pair<std::string, QString> rows[] = {
      {"", QDir::homePath()},
      {desk.full("nowhere"), QDir::homePath()},
      {desk.full("nowhere\\"), QDir::homePath()},
      {desk.full("readme.txt"), QDir::homePath()},
      {"C:\\GAMES\\", QDir::homePath()},
      {"relative", QDir::homePath()},
      {desk.home.path().string(), here},
      {desk.full(""), here},
      {desk.full("sub\\"), here + "/sub"},
      {desk.full("sub//"), here + "/sub"},
      {"/", "/"},
  };
  for (const auto& [told, start] : rows) EXPECT_EQ(startOf(told), start) << told;

  // The folder of what was chosen is where the next one starts, but not that of a cancelled one.
  desk.open(in(desk.full("sub")), [](QFileDialog& box) { FileDesk::type(box, "inner.wad"); });
  EXPECT_EQ(startOf(desk.home.path().string()), here);
  EXPECT_EQ(startOf(""), here + "/sub");
  EXPECT_EQ(startOf("C:\\GAMES\\"), here + "/sub");
}

TEST(FileDialogs, WhatTheyShow) {
  FileDesk desk;
  struct Row {
    std::string filter;
    QStringList kinds;
    QStringList files;
  };
  const QStringList all = {"DOOM.WAD", "bare", "doom2.wad", "readme.txt", "sub", "ä.wad", "→.wad"};
  const QStringList wads = {"DOOM.WAD", "doom2.wad", "sub", "ä.wad", "→.wad"};
  const Row rows[] = {
      {"", {"All files"}, all},
      {"ZDOOM", {"ZDOOM"}, all},
      {"doom.wad", {"doom.wad"}, all},
      {"Final Doom (any)", {"Final Doom (any)"}, all},
      {"*.wad", {"*.wad", "All files"}, wads},
      {"*.WAD;*.txt",
       {"*.WAD *.txt", "All files"},
       {"DOOM.WAD", "doom2.wad", "readme.txt", "sub", "ä.wad", "→.wad"}},
  };
  for (const Row& row : rows) {
    desk.open(in(desk.full(""), row.filter, "Choose"), [&](QFileDialog& box) {
      EXPECT_EQ(box.windowTitle(), "Choose");
      const auto& kinds = *box.findChild<QComboBox*>("fileTypeCombo");
      QStringList shown;
      for (int i = 0; i < kinds.count(); ++i) shown << kinds.itemText(i);
      EXPECT_EQ(shown, row.kinds);
      const auto& list = *box.findChild<QListView*>("listView");
      const auto files = [&] {
        QStringList names;
        for (int i = 0; i < list.model()->rowCount(list.rootIndex()); ++i) {
          names << list.model()->index(i, 0, list.rootIndex()).data().toString();
        }
        names.sort();
        return names;
      };
      EXPECT_TRUE(QTest::qWaitFor([&] { return files() == row.files; }, 2000))
          << files().join(' ').toStdString();
    });
  }
}

TEST(FileDialogs, WhatTheyGive) {
  FileDesk desk;
  struct Row {
    const char* typed;
    const char* extension;
    const char* given;
  };
  const Row rows[] = {
      {"doom2.wad", "", "doom2.wad"},
      {"doom2", "wad", "doom2.wad"},
      {"bare", "wad", "bare"},
      {"ä.wad", "wad", "\xE4.wad"},
      {"sub/inner", "wad", "sub/inner.wad"},
  };
  for (const Row& row : rows) {
    for (const auto last : {FileDesk::Last::enter, FileDesk::Last::button}) {
      CommonDialog dialog;
      dialog.InitDir = desk.full("");
      dialog.DefaultExt = row.extension;
      Desk::whenBoxOpens([&](QWidget& box) {
        FileDesk::type(dynamic_cast<QFileDialog&>(box), QString::fromUtf8(row.typed), last);
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
  }
  CommonDialog dialog;
  dialog.FileName = "before";
  Desk::whenBoxOpens([&](QWidget& box) { box.close(); });
  EXPECT_FALSE(dialog.ShowOpen(desk.dialogs));
  EXPECT_EQ(dialog.FileName, "before");
}

TEST(FileDialogs, WhatCannotBeGivenIsTold) {
  FileDesk desk;
  const std::pair<const char*, const char*> rows[] = {
      {"→.wad", "letters"},  // the code page lacks the arrow
      {"missing.wad", "no such file"},
  };
  for (const auto& [typed, word] : rows) {
    QString told;
    Desk::whenBoxOpens([&](QWidget& window) {
      auto& box = dynamic_cast<QFileDialog&>(window);
      FileDesk::type(box, QString::fromUtf8(typed));
      Desk::whenBoxOpens([&](QWidget& refusal) {
        for (const QLabel* label : refusal.findChildren<QLabel*>()) told += label->text();
        QTest::keyClick(&refusal, Qt::Key_Return);
        QTimer::singleShot(20, &box, [&box] { FileDesk::type(box, "doom2.wad"); });
      });
    });
    const auto given = desk.dialogs.openFile(in(desk.full("")));
    EXPECT_TRUE(told.contains(word)) << told.toStdString();
    EXPECT_EQ(given, desk.full("doom2.wad"));
  }
}

TEST(FileDialogs, TheEndOfTheProgramClosesThem) {
  for (const char* typed : {"", "→.wad"}) {
    FileDesk desk;
    bool wentOn = false;
    QTimer::singleShot(0, [&] {
      const auto end = [&](QWidget&) {
        desk.edge.run([&] { desk.client.ports.application.End(); });
      };
      Desk::whenBoxOpens([&](QWidget& box) {
        if (*typed == '\0') return end(box);
        Desk::whenBoxOpens(end);
        FileDesk::type(dynamic_cast<QFileDialog&>(box), QString::fromUtf8(typed));
      });
      desk.edge.run([&] {
        desk.dialogs.openFile(in(desk.full("")));
        wentOn = true;
      });
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_FALSE(wentOn);
    for (const QWidget* window : QApplication::topLevelWidgets()) EXPECT_FALSE(window->isVisible());
  }
}

TEST(FileDialogs, TheirPartsHaveNames) {
  FileDesk desk;
  desk.open(in(desk.full(""), "*.wad"), [](QFileDialog& box) {
    for (const char* name : {"File name", "File type", "Look in", "Places", "Files"}) {
      const auto parts = box.findChildren<QWidget*>();
      EXPECT_TRUE(std::ranges::any_of(parts, [&](const QWidget* part) {
        return part->isVisible() && part->accessibleName() == name;
      })) << name;
    }
  });
}

}  // namespace
}  // namespace kelvaron::testing
