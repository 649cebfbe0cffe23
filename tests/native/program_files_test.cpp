// Files and folders beside the program, on a real disk.
#include "native/program_files.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>

#include "native/bare_name.h"
#include "platform/fault.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

namespace fs = std::filesystem;

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

int faultOf(const std::function<void()>& step) {
  try {
    step();
  } catch (const Fault& fault) {
    return fault.number();
  }
  return 0;
}

class Files : public ::testing::Test {
 protected:
  void make(const std::string& name, const std::string& content = "former") const {
    std::ofstream(base / name) << content;
  }
  /// Hidden ones too.
  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& entry : fs::directory_iterator(base)) {
      all.push_back(entry.path().filename().string());
    }
    std::ranges::sort(all);
    return all;
  }

  TemporaryFolder folder;
  fs::path base = folder.path();
  ProgramFiles files{base};
};

using Names = std::vector<std::string>;

TEST_F(Files, AreReadWhole) {
  const std::string bytes("a\0b\r\n\xFF\n", 7);
  make("Kelvaron.INI", bytes);
  make("empty.ini", "");
  make("gro\xC3\x9F.ini", std::string(100'000, 'x'));
  EXPECT_EQ(files.folder(), base.string());
  EXPECT_EQ(files.read("kELVARON.ini"), bytes);
  EXPECT_EQ(files.read("empty.ini"), "");
  EXPECT_EQ(files.read("GRO\xDF.INI"), std::string(100'000, 'x'));
}

TEST_F(Files, ThatCannotBeRead) {
  make("locked.ini");
  fs::permissions(base / "locked.ini", fs::perms::none);
  fs::create_directory(base / "sub.ini");
  fs::create_symlink(base / "gone", base / "broken.ini");
  fs::create_symlink(base / "loop.ini", base / "loop.ini");
  make("inside.ini");
  const std::vector<std::pair<std::string, int>> cases = {
      {"none.ini", fault_number::kFileNotFound},
      {"", fault_number::kFileNotFound},
      {"../" + base.filename().string() + "/inside.ini", fault_number::kFileNotFound},
      {"broken.ini", fault_number::kFileNotFound},
      {"sub.ini", fault_number::kPathAccess},
      {"loop.ini", fault_number::kPathAccess},
  };
  for (const auto& [name, number] : cases) {
    EXPECT_EQ(faultOf([&, wanted = name] { files.read(wanted); }), number) << name;
  }
  // Rights don't bind root.
  EXPECT_EQ(faultOf([&] { files.read("locked.ini"); }),
            ::geteuid() == 0 ? 0 : fault_number::kPathAccess);
  ProgramFiles nowhere(base / "none");
  EXPECT_EQ(faultOf([&] { nowhere.read("a.ini"); }), fault_number::kFileNotFound);
}

TEST_F(Files, AreReplacedUnderTheNameThatTheDiskHas) {
  make("Options.INI");
  files.replace("options.ini", "new");
  files.replace("fr\xFCh.ini", std::string("a\0b", 3));
  files.replace("empty.ini", "");
  EXPECT_EQ(contents(base / "Options.INI"), "new");
  EXPECT_EQ(contents(base / "fr\xC3\xBCh.ini"), std::string("a\0b", 3));
  EXPECT_EQ(names(), (Names{"Options.INI", "empty.ini", "fr\xC3\xBCh.ini"}));
}

TEST_F(Files, KeepTheirLinkAndTheirRights) {
  fs::create_directory(base / "kept");
  make("kept/real.ini");
  fs::permissions(base / "kept/real.ini", fs::perms(0640));
  fs::create_symlink("kept/real.ini", base / "linked.ini");
  files.replace("linked.ini", "new");
  EXPECT_TRUE(fs::is_symlink(base / "linked.ini"));
  EXPECT_EQ(contents(base / "kept/real.ini"), "new");
  EXPECT_EQ(fs::status(base / "kept/real.ini").permissions(), fs::perms(0640));

  const mode_t usual = ::umask(027);
  files.replace("fresh.ini", "x");
  ::umask(usual);
  EXPECT_EQ(fs::status(base / "fresh.ini").permissions(), fs::perms(0640));
  EXPECT_EQ(names(), (Names{"fresh.ini", "kept", "linked.ini"}));
}

TEST_F(Files, ThatCannotBeReplacedStayAsTheyWere) {
  make("target.ini");
  fs::create_directory(base / "sub.ini");
  for (const std::string name : {"sub.ini", "", ".hidden", "../up.ini", "a\\b", "a\nb"}) {
    EXPECT_EQ(faultOf([&] { files.replace(name, "x"); }), fault_number::kPathAccess) << name;
  }
  EXPECT_EQ(faultOf([&] { files.replace(std::string(300, 'n'), "x"); }), fault_number::kPathAccess);
  ProgramFiles nowhere(base / "none");
  EXPECT_EQ(faultOf([&] { nowhere.replace("a.ini", "x"); }), fault_number::kPathAccess);
  if (::geteuid() != 0) {  // rights don't bind root
    fs::permissions(base, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(faultOf([&] { files.replace("target.ini", "x"); }), fault_number::kPathAccess);
    fs::permissions(base, fs::perms::owner_all);
  }
  EXPECT_EQ(names(), (Names{"sub.ini", "target.ini"}));
  EXPECT_EQ(contents(base / "target.ini"), "former");
}

/// A small file system of its own, where this user may mount one.
class SmallDisk : public Files {
 protected:
  void SetUp() override {
    if (::mount("none", base.c_str(), "tmpfs", 0, "size=64k") != 0) {
      GTEST_SKIP() << "this user may not mount a file system";
    }
    mounted = true;
    make("target.ini");
  }
  void TearDown() override {
    if (mounted) ::umount2(base.c_str(), MNT_DETACH);
  }

  bool mounted = false;
};

TEST_F(SmallDisk, FullKeepsTheFormerFile) {
  EXPECT_EQ(faultOf([&] { files.replace("target.ini", std::string(200'000, 'x')); }),
            fault_number::kDiskFull);
  EXPECT_EQ(contents(base / "target.ini"), "former");
  EXPECT_EQ(names(), Names{"target.ini"});
  files.replace("target.ini", "fits");
  EXPECT_EQ(contents(base / "target.ini"), "fits");
}

TEST_F(SmallDisk, ReadOnlyKeepsTheFormerFile) {
  ASSERT_EQ(::mount("none", base.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_EQ(faultOf([&] { files.replace("target.ini", "x"); }), fault_number::kPathAccess);
  EXPECT_EQ(faultOf([&] { files.MkDir("sub"); }), fault_number::kPathAccess);
  EXPECT_EQ(files.read("target.ini"), "former");
  EXPECT_EQ(names(), Names{"target.ini"});
}

TEST_F(Files, FoldersAreMadeOnce) {
  files.MkDir("Sounds");
  files.MkDir("fr\xFCh");
  EXPECT_TRUE(fs::is_directory(base / "fr\xC3\xBCh"));
  for (const char* refused : {"Sounds", "sOUNDS", "", ".", "../up", "a/b"}) {
    EXPECT_EQ(faultOf([&] { files.MkDir(refused); }), fault_number::kPathAccess) << refused;
  }
  EXPECT_EQ(names(), (Names{"Sounds", "fr\xC3\xBCh"}));
}

}  // namespace
}  // namespace kelvaron::testing
