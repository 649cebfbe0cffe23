// Files and folders beside the program and in the user's own, on a real disk.
#include "native/program_files.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "build_settings.h"
#include "native/file_streams.h"
#include "native/instance_lock.h"
#include "native/program_folders.h"
#include "tests/native/native_test.h"

namespace kelvaron::testing {
namespace {

using namespace std::string_literals;
using namespace fault_number;
using Names = std::vector<std::string>;

class Files : public DiskTest {
 protected:
  /// Hidden ones too.
  Names names() const {
    Names all;
    for (const auto& entry : fs::directory_iterator(base)) all.push_back(entry.path().filename());
    std::ranges::sort(all);
    return all;
  }

  ProgramFiles files{base};
  ProgramFiles nowhere{base / "none"};
};

TEST_F(Files, AreReadWhole) {
  const std::string bytes = "a\0b\r\n\xFF\n"s;
  make("Kelvaron.INI", bytes);
  make("empty.ini", "");
  make("gro\u00DF.ini", std::string(100'000, 'x'));
  EXPECT_EQ(files.folder(), base.string());
  EXPECT_EQ(files.read("kELVARON.ini"), bytes);
  EXPECT_EQ(files.read("empty.ini"), "");
  EXPECT_EQ(files.read("GRO\xDF.INI"), std::string(100'000, 'x'));
}

TEST_F(Files, ThatCannotBeRead) {
  make("locked.ini", "x", fs::perms::none);
  make("inside.ini");
  fs::create_directory(base / "sub.ini");
  fs::create_symlink(base / "gone", base / "broken.ini");
  fs::create_symlink(base / "loop.ini", base / "loop.ini");
  const std::pair<std::string, int> cases[] = {
      {"none.ini", kFileNotFound},
      {"", kFileNotFound},
      {"../" + base.filename().string() + "/inside.ini", kFileNotFound},
      {"broken.ini", kFileNotFound},
      {"sub.ini", kPathAccess},
      {"loop.ini", kPathAccess},
      {"locked.ini", ::geteuid() == 0 ? 0 : kPathAccess},  // rights don't bind root
  };
  for (const auto& [name, number] : cases) {
    EXPECT_EQ(faultOf([&, &wanted = name] { files.read(wanted); }), number) << name;
  }
  EXPECT_EQ(faultOf([&] { nowhere.read("a.ini"); }), kFileNotFound);
}

TEST_F(Files, AreReplacedUnderTheNameThatTheDiskHas) {
  make("Options.INI");
  files.replace("options.ini", "new");
  files.replace("fr\xFCh.ini", "a\0b"s);
  files.replace("empty.ini", "");
  EXPECT_EQ(contents("Options.INI"), "new");
  EXPECT_EQ(contents("fr\u00FCh.ini"), "a\0b"s);
  EXPECT_EQ(names(), (Names{"Options.INI", "empty.ini", "fr\u00FCh.ini"}));
}

TEST_F(Files, KeepTheirLinkAndTheirRights) {
  make("kept/real.ini", "former", fs::perms(0640));
  fs::create_symlink("kept/real.ini", base / "linked.ini");
  files.replace("linked.ini", "new");
  EXPECT_TRUE(fs::is_symlink(base / "linked.ini"));
  EXPECT_EQ(contents("kept/real.ini"), "new");
  EXPECT_EQ(fs::status(base / "kept/real.ini").permissions(), fs::perms(0640));

  const mode_t usual = ::umask(027);
  files.replace("fresh.ini", "x");
  ::umask(usual);
  EXPECT_EQ(fs::status(base / "fresh.ini").permissions(), fs::perms(0640));
  EXPECT_EQ(names(), (Names{"fresh.ini", "kept", "linked.ini"}));
}

TEST_F(Files, ThatCannotBeReplacedStayAsTheyWere) {
  make("target.ini", "former");
  fs::create_directory(base / "sub.ini");
  for (const std::string& name : {"sub.ini"s, ""s, "../up.ini"s, std::string(300, 'n')}) {
    EXPECT_EQ(faultOf([&] { files.replace(name, "x"); }), kPathAccess) << name;
  }
  EXPECT_EQ(faultOf([&] { nowhere.replace("a.ini", "x"); }), kPathAccess);
  if (::geteuid() != 0) {  // rights don't bind root
    fs::permissions(base, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(faultOf([&] { files.replace("target.ini", "x"); }), kPathAccess);
    fs::permissions(base, fs::perms::owner_all);
  }
  EXPECT_EQ(names(), (Names{"sub.ini", "target.ini"}));
  EXPECT_EQ(contents("target.ini"), "former");
}

TEST_F(Files, SurviveADiskThatIsFullOrReadOnly) {
  if (::mount("none", base.c_str(), "tmpfs", 0, "size=64k") != 0) {
    GTEST_SKIP() << "this user may not mount a file system";
  }
  const auto replacing = [&](const std::string& content) {
    return faultOf([&] { files.replace("target.ini", content); });
  };
  make("target.ini", "former");
  EXPECT_EQ(replacing(std::string(200'000, 'x')), kDiskFull);
  EXPECT_EQ(contents("target.ini"), "former");
  EXPECT_EQ(names(), Names{"target.ini"});
  EXPECT_EQ(replacing("fits"), 0);
  EXPECT_EQ(contents("target.ini"), "fits");
  EXPECT_EQ(::mount("none", base.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
  EXPECT_EQ(replacing("x"), kPathAccess);
  EXPECT_EQ(faultOf([&] { files.MkDir("sub"); }), kPathAccess);
  EXPECT_EQ(contents("target.ini"), "fits");
  EXPECT_EQ(names(), Names{"target.ini"});
  ::umount2(base.c_str(), MNT_DETACH);
}

TEST_F(Files, FoldersAreMadeOnce) {
  files.MkDir("Sounds");
  files.MkDir("fr\xFCh");
  EXPECT_TRUE(fs::is_directory(base / "fr\u00FCh"));
  for (const char* refused : {"Sounds", "sOUNDS", "", "../up"}) {
    EXPECT_EQ(faultOf([&] { files.MkDir(refused); }), kPathAccess) << refused;
  }
  EXPECT_EQ(names(), (Names{"Sounds", "fr\u00FCh"}));
}

class Streams : public DiskTest {
 protected:
  DiskStreams streams{base};
};

TEST_F(Streams, ReadInBlocksAndOnlyFiles) {
  make("Maps.WAD", "abcdefg");
  const auto file = streams.open(base.string() + "\\maps.wad");
  EXPECT_EQ(file->length(), 7);
  fs::remove(base / "Maps.WAD");
  std::array<char, 4> block{};
  EXPECT_EQ(file->read(block), 4U);
  EXPECT_EQ(file->read(block), 3U);
  EXPECT_EQ(std::string(block.data(), 3), "efg");
  EXPECT_EQ(file->read(block), 0U);

  ASSERT_EQ(::mkfifo((base / "pipe").c_str(), S_IRUSR | S_IWUSR), 0);
  make("locked", "x", fs::perms::none);
  const std::pair<const char*, int> cases[] = {{"@/nothing", 53},
                                               {"", 53},
                                               {"C:\\", 53},
                                               {"@", 75},
                                               {"@/pipe", 75},
                                               {"/dev/zero", 75},
                                               {"@/locked", ::geteuid() == 0 ? 0 : 75}};
  for (const auto& [name, number] : cases) {
    EXPECT_EQ(faultOf([&, &wanted = name] { streams.open(placed(wanted)); }), number) << name;
  }
}

TEST_F(Streams, ReceivedFileHasANameOfItsOwnUntilItIsCommitted) {
  {
    const auto first = streams.receive("m.wad");
    const auto second = streams.receive("m.wad");
    first->write("first");
    second->write("second");
    second->commit();
  }
  EXPECT_EQ(contents("received/m.wad"), "second");
  EXPECT_EQ(contents("received/m.wad.part"), "first");
  EXPECT_FALSE(fs::exists(base / "received/m.wad.2.part"));
  EXPECT_EQ(fs::status(base / "received/m.wad").permissions() & fs::perms(0111), fs::perms::none);
}

TEST_F(Streams, LinkInTheFolderIsReplacedNotFollowed) {
  make("target", "precious");
  fs::create_directory(base / "received");
  fs::create_symlink(base / "target", base / "received/m");
  fs::create_symlink(base / "target", base / "received/m.part");
  const auto file = streams.receive("m");
  file->write("new");
  file->commit();
  EXPECT_EQ(contents("target"), "precious");
  EXPECT_EQ(contents("received/m"), "new");
}

TEST_F(Streams, OnlyOneNameInTheFolder) {
  for (const auto& name : {""s, "."s, ".."s, "a/b"s, "/"s, "a\0b"s, std::string(300, 'n')}) {
    EXPECT_EQ(faultOf([&] { streams.receive(name); }), 75) << name;
  }
}

TEST_F(Streams, FullDiskIsAFaultOfItsOwn) {
  // The one file of this system that is always full stands in for the disk.
  const auto file = streams.receive("m");
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
    std::error_code gone;
    if (fs::read_symlink(entry.path(), gone) != base / "received/m.part") continue;
    ASSERT_GE(::dup2(full, std::stoi(entry.path().filename().string())), 0);
  }
  ::close(full);
  EXPECT_EQ(faultOf([&] { file->write("x"); }), 61);
}

class Folders : public DiskTest {};

TEST_F(Folders, OfAProgramCarriedAlongOrInstalled) {
  const fs::path program = base / "bin";
  const fs::path home = base / "home";
  fs::create_directories(program);
  const ProgramFolders carried = programFolders(program, "", home);
  EXPECT_EQ(carried.own, program);
  EXPECT_EQ(carried.installed, program);
  EXPECT_EQ(carried.engines, program / "engines");
  EXPECT_FALSE(fs::exists(home)) << "nothing is made where nothing is needed";
  // A copy in which the user can't write.
  const ProgramFolders copied = programFolders(base / "gone", "", home);
  EXPECT_EQ(copied.own, home / ".local/share/kelvaron");
  EXPECT_EQ(copied.installed, base / "gone");
  EXPECT_EQ(copied.engines, base / "gone/engines");

  // Also when it can be written to, as by an administrator.
  fs::create_directories(program / build::kDataFromPrograms);
  const ProgramFolders installed = programFolders(program, "", home);
  EXPECT_EQ(installed.own, home / ".local/share/kelvaron");
  EXPECT_EQ(installed.installed, base / "share/kelvaron");
  EXPECT_EQ(installed.problem, "");
  EXPECT_EQ(fs::status(installed.own).permissions(), fs::perms::owner_all);
  EXPECT_EQ(programFolders(program, base / "data", home).own, base / "data/kelvaron");
  EXPECT_EQ(programFolders(program, "relative", home).own, installed.own);

  EXPECT_NE(programFolders(program, "", "").problem.find("no home folder"), std::string::npos);
  EXPECT_EQ(programFolders(program, "", "/dev/null").problem,
            "Kelvaron can not keep settings and files: the folder "
            "/dev/null/.local/share/kelvaron can not be written to (Not a directory).");
}

TEST_F(Folders, OfTheLockAreHeldByOneProcessUntilItDies) {
  const fs::path session = base / "session";
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe(pipe.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const InstanceLock lock(session);
    const char answer = lock.held() ? 'y' : 'n';
    if (::write(pipe[1], &answer, 1) == 1) ::pause();
    ::_exit(1);
  }
  char answer = 0;
  ASSERT_EQ(::read(pipe[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  const InstanceLock second(session);
  EXPECT_FALSE(second.held());
  EXPECT_TRUE(second.takenByAnother());
  EXPECT_EQ(second.problem(), "Kelvaron is already running");
  ASSERT_EQ(::kill(child, SIGKILL), 0);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  for (int turn = 0; turn < 2; ++turn) {  // again after its end in this process
    const InstanceLock third(session);
    EXPECT_TRUE(third.held()) << third.problem();
    EXPECT_EQ(third.problem(), "");
  }
  EXPECT_EQ(fs::status(session).permissions(), fs::perms::owner_all);
  for (const int end : pipe) ::close(end);
}

TEST_F(Folders, OfTheLockMustBeTheUsersOwn) {
  const fs::path foreign = ::geteuid() == 0 ? base / "foreign" : "/usr";
  if (::geteuid() == 0) {
    fs::create_directory(foreign);
    ASSERT_EQ(::chown(foreign.c_str(), 12345, 12345), 0);
  }
  for (const char* name : {"open", "trap"}) fs::create_directory(base / name);
  fs::permissions(base / "open", fs::perms::all);
  fs::create_directory_symlink(base / "open", base / "link");
  fs::create_symlink(base / "target", base / "trap" / "instance.lock");
  const std::pair<fs::path, const char*> cases[] = {
      {foreign, "belongs to another user"},
      {base / "open", "written to by other users"},
      {base / "link", "cannot be opened"},
      {base / "trap", "cannot be opened"},
      {base / "missing" / "session", "cannot be made: No such file"},
  };
  for (const auto& [path, reason] : cases) {
    const InstanceLock lock(path);
    EXPECT_FALSE(lock.held()) << path;
    EXPECT_FALSE(lock.takenByAnother()) << path;
    EXPECT_NE(lock.problem().find(reason), std::string::npos) << lock.problem();
  }
  EXPECT_FALSE(fs::exists(base / "target"));
}

TEST_F(Folders, OfTheLockFollowTheEnvironment) {
  const std::string fallback = "/tmp/kelvaron-" + std::to_string(::getuid());
  const std::pair<std::string, fs::path> cases[] = {
      {base, base / "kelvaron"}, {base / "missing", fallback}, {"relative", fallback}};
  const char* before = std::getenv("XDG_RUNTIME_DIR");
  const std::string kept = before == nullptr ? "" : before;
  for (const auto& [value, expected] : cases) {
    ::setenv("XDG_RUNTIME_DIR", value.c_str(), 1);
    EXPECT_EQ(InstanceLock::sessionFolder(), expected) << value;
  }
  ::setenv("XDG_RUNTIME_DIR", kept.c_str(), 1);
}

}  // namespace
}  // namespace kelvaron::testing
