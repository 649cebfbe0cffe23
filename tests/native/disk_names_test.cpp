// Names found on a real disk.
#include "native/disk_names.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <tuple>

#include "native/bare_name.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

namespace fs = std::filesystem;
using Kind = DiskName::Kind;

class DiskNames : public ::testing::Test {
 protected:
  void make(const std::string& name, fs::perms permissions = fs::perms::owner_read) const {
    fs::create_directories((base / name).parent_path());
    std::ofstream(base / name) << "x";
    fs::permissions(base / name, permissions);
  }

  TemporaryFolder folder;
  fs::path base = folder.path();
};

TEST_F(DiskNames, AreFoundInAnyCase) {
  for (const std::string name : {"dooM2", "doOm2", "DOOM2", "doom2", "dOom2", "Doom2"}) {
    make("Wads/" + name + ".wad");
  }
  make(
      "Wads/stra\xC3\x9F"
      "e/\xC3\xA9t\xC3\xA9.wad");
  make("Wads/\xE2\x82\xAC.wad");
  make("Wads/\xCE\xB1.wad");  // a Greek letter, which the code page lacks
  make("run.exe", fs::perms::owner_all);
  fs::create_symlink(base / "Wads", base / "link");
  fs::create_symlink(base / "gone", base / "broken");
  ASSERT_EQ(::mkfifo((base / "fifo").c_str(), 0600), 0);
  const std::vector<std::tuple<std::string, std::string, Kind>> cases = {
      {"Wads/doom2.wad", "Wads/doom2.wad", Kind::file},
      {"WADS\\DOOM2.Wad", "Wads/DOOM2.wad", Kind::file},
      {"wads//..\\.\\LINK/doom2.WAD", "Wads/.././link/DOOM2.wad", Kind::file},
      {"wads/STRA\xDF"
       "E/\xC9T\xC9.WAD",
       "Wads/stra\xC3\x9F"
       "e/\xC3\xA9t\xC3\xA9.wad",
       Kind::file},
      {"wads/\x80.WAD", "Wads/\xE2\x82\xAC.wad", Kind::file},
      {"wads/?.wad", "", Kind::other},
      {"Run.EXE", "run.exe", Kind::program},
      {"run.exe/", "", Kind::other},
      {"RUN.EXE\\x", "", Kind::other},
      {"LINK\\", "link/", Kind::folder},
      {"broken", "", Kind::other},
      {"BROKEN", "", Kind::other},
      {"FIFO", "fifo", Kind::other},
      {"none/doom2.wad", "", Kind::other},
      {std::string(300, 'x'), "", Kind::other},
      {std::string(1'000'000, '/') + "run.exe", "", Kind::other},
      {std::string("run.exe\0", 8), "", Kind::other},
  };
  for (const auto& [typed, found, kind] : cases) {
    SCOPED_TRACE(typed.substr(0, 100));
    const auto name = findOnDisk(base.string() + '/' + typed);
    ASSERT_EQ(name.has_value(), !found.empty());
    if (!name) continue;
    EXPECT_EQ(name->path, base.string() + '/' + found);
    EXPECT_EQ(name->kind, kind);
  }
  EXPECT_EQ(findOnDisk(""), std::nullopt);
  EXPECT_EQ(findOnDisk("/"), (DiskName{"/", Kind::folder}));
}

TEST_F(DiskNames, RelativeOnesStayRelative) {
  make("Wads/Doom2.wad");
  const fs::path before = fs::current_path();
  fs::current_path(base);
  const auto relative = findOnDisk("wads\\DOOM2.Wad");
  fs::current_path(before);
  EXPECT_EQ(relative, (DiskName{"Wads/Doom2.wad", Kind::file}));
}

TEST_F(DiskNames, PathsThatWouldReadTooManyFoldersAreNotFound) {
  make("Wads/doom2.wad");
  std::string few = base.string();
  std::string many = base.string();
  for (int turn = 0; turn < 30; ++turn) few += "/WADS/..";
  for (int turn = 0; turn < 40; ++turn) many += "/WADS/..";
  EXPECT_TRUE(findOnDisk(few + "/Wads/doom2.wad"));
  EXPECT_FALSE(findOnDisk(many + "/Wads/doom2.wad"));
}

TEST(Names, OnlyBareOnes) {
  for (const char* good : {"boom", "Boom 2", "a.b", "\xFC"}) EXPECT_TRUE(isBareName(good)) << good;
  for (const char* bad : {"", ".", "..", ".hidden", "a/b", "..\\b", "c:b", "a\nb", "a\x7F"}) {
    EXPECT_FALSE(isBareName(bad)) << bad;
  }
}

TEST(Drives, OnlyBeforeTheFirstFolder) {
  for (const char* drive : {"C:\\GAMES", "c:/x", "Z:"}) EXPECT_TRUE(namesDrive(drive)) << drive;
  for (const char* none : {"", "C", "1:\\x", "\\C:\\x", "C:x", "\xC4:\\x"}) {
    EXPECT_FALSE(namesDrive(none)) << none;
  }
}

}  // namespace
}  // namespace kelvaron::testing
