// What Windows gives in a way of its own: names, files, programs, echoes, the lock, the registry.
#include <gmock/gmock.h>

#include <tuple>

#include "native/bare_name.h"
#include "native/command_line.h"
#include "native/disk_names.h"
#include "native/echo.h"
#include "native/file_streams.h"
#include "native/instance_lock.h"
#include "native/local_host.h"
#include "native/native_process.h"
#include "native/paths.h"
#include "native/program_files.h"
#include "native/program_folders.h"
#include "native/system_registry.h"
#include "native/windows/long_path.h"
#include "native/windows/system_headers.h"
#include "tests/native/native_test.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using Kind = DiskName::Kind;

class Names : public DiskTest {};

TEST_F(Names, OfPathsAsPlayersTypeThem) {
  make("Wads/My Doom2.wad");
  make("run.exe");
  make("run.bat");
  fs::create_directory(base / systemPath("stra\u00DFe"));
  std::ofstream(base / systemPath("stra\u00DFe/\u20AC.wad")) << "x";
  const std::string here = utf8Of(base);
  const std::vector<std::tuple<std::string, std::string, Kind>> cases = {
      {"/wads/my doom2.WAD", "\\wads\\my doom2.WAD", Kind::file},
      {"\\stra\337e\\\x80.wad", "\\stra\u00DFe\\\u20AC.wad", Kind::file},
      {"\\RUN.EXE", "\\RUN.EXE", Kind::program},
      {"\\run.bat", "\\run.bat", Kind::file},
      {"\\wads", "\\wads", Kind::folder},
      {"\\none.wad", "", Kind::other},
      {"\\NUL", "", Kind::other},
  };
  for (const auto& [typed, path, kind] : cases) {
    const auto found = findOnDisk(here + typed);
    if (path.empty()) {
      EXPECT_TRUE(!found || found->kind == Kind::other) << typed;
    } else {
      EXPECT_EQ(found, (DiskName{here + path, kind})) << typed;
    }
  }
  // A share of this very machine's disk; a drive alone is a folder.
  EXPECT_EQ(findOnDisk("C:\\")->kind, Kind::folder);
}

TEST_F(Names, OfReceivedFilesThatTheSystemWouldTakeForOthers) {
  DiskStreams streams(base);
  for (const char* name : {"CON", "nul.wad", "Com1.txt", "LPT9", "aux .wad", "a:b", "dot.",
                           "blank ", "a\\b", "a/b", "what?", "", "..", "."}) {
    EXPECT_EQ(faultOf([&] { streams.receive(name); }), fault_number::kPathAccess) << name;
  }
  for (const char* name : {"CONSOLE.wad", "com10.txt", "a.b.c", "stra\337e"}) {
    const auto file = streams.receive(name);
    file->write("all of it\n");
    file->commit();
    const auto read = streams.open(utf8Of(base) + "\\received\\" + name);
    std::array<char, 64> block{};
    EXPECT_EQ(std::string(block.data(), read->read(block)), "all of it\n") << name;
  }
}

TEST_F(Names, OfAnyLength) {
  fs::path deep = base;
  for (int depth = 0; depth < 12; ++depth) deep /= std::string(30, 'd');
  EXPECT_THAT(utf8Of(fs::path(longPath(deep))), ::testing::StartsWith(R"(\\?\)"));
  EXPECT_EQ(longPath(base), base.native());
}

TEST_F(Names, OfSettingsThatAreReplaced) {
  ProgramFiles files(base);
  EXPECT_EQ(faultOf([&] { files.read("kvconfig.cfg"); }), fault_number::kFileNotFound);
  for (const std::string content : {"first\r\n", "", "second\x1A"}) {
    files.replace("KVconfig.cfg", content);
    EXPECT_EQ(files.read("kvconfig.CFG"), content);
  }
  // Who reads it meanwhile keeps it from being replaced, and it stays as it was.
  std::ifstream reader(base / "KVconfig.cfg");
  const int fault = faultOf([&] { files.replace("kvconfig.cfg", "third"); });
  reader.close();
  EXPECT_EQ(files.read("kvconfig.cfg"), fault == 0 ? "third" : "second\x1A");
  EXPECT_EQ(std::distance(fs::directory_iterator(base), fs::directory_iterator()), 1);
}

TEST_F(Names, OfFoldersBesideTheProgramOrTheUsers) {
  fs::create_directory(base / "program");
  EXPECT_EQ(programFolders(base / "program", utf8Of(base), "").own, base / "program");
  const ProgramFolders elsewhere = programFolders(base / "gone", utf8Of(base / "data"), "");
  EXPECT_EQ(elsewhere.own, base / "data/kelvaron");
  EXPECT_EQ(elsewhere.problem, "");
  EXPECT_TRUE(fs::is_directory(base / "data/kelvaron"));
}

TEST_F(Names, OfTheLockThatOneInstanceHolds) {
  {
    const InstanceLock first(base / "session");
    EXPECT_TRUE(first.held()) << first.problem();
    const InstanceLock second(base / "session");
    EXPECT_TRUE(second.takenByAnother()) << second.problem();
  }
  EXPECT_TRUE(InstanceLock(base / "session").held());
  EXPECT_THAT(utf8Of(InstanceLock::sessionFolder()), ::testing::EndsWith("kelvaron"));
}

class Programs : public DiskTest {
 protected:
  Programs() {
    std::array<wchar_t, 1024> own{};
    ::GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size()));
    fs::create_directory(base / "my games");
    fs::copy_file(fs::path(own.data()).parent_path() / KELVARON_START_RECORDER,
                  base / "my games/engine.exe");
    port.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  }
  void run(const std::string& arguments) {
    fs::remove(base / "my games/engine.exe.started");
    port.run(utf8Of(base) + "\\my games\\engine.exe" + arguments, WindowStyle::maximizedFocus);
  }
  bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit = 20s) {
    return loop.runUntil(done, limit);
  }

  PollLoop loop;
  NativeProcessPort port{loop};
  std::vector<std::string> troubles;
};

TEST_F(Programs, GetTheirArgumentsWhole) {
  make("my wads/plain file.wad");
  const std::string wads = utf8Of(base) + "\\my wads\\";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {" -skill 4 -file " + wads + "plain file.wad -warp 07",
       "-skill\n4\n-file\n" + wads + "plain file.wad\n-warp\n07\n"},
      {" a\\\\b \"c d\" e\\ -name \\\\server\\share\\x y",
       "a\\\\b\n\"c\nd\"\ne\\\n-name\n\\\\server\\share\\x\ny\n"},
      {" & | %PATH% ^ ; $(x) `y`", "&\n|\n%PATH%\n^\n;\n$(x)\n`y`\n"},
  };
  for (const auto& [arguments, expected] : cases) {
    run(arguments);
    ASSERT_TRUE(runUntil([&] { return fs::exists(base / "my games/engine.exe.started"); }));
    EXPECT_EQ(contents("my games/engine.exe.started"), expected) << arguments;
  }
}

TEST_F(Programs, ThatFailAreTold) {
  run(" -print lost -exit 3");
  ASSERT_TRUE(runUntil([&] { return !troubles.empty(); }));
  EXPECT_THAT(troubles.front(), HasSubstr("engine.exe ended with the error 3."));
  EXPECT_THAT(troubles.front(), HasSubstr("The last that it said:\r\nlost"));
  troubles.clear();
  make("no program.exe", "a text");
  make("shell.bat", "a text");
  for (const auto& [name, problem] :
       std::vector<std::pair<std::string, std::string>>{{"no program.exe", "could not be"},
                                                        {"shell.bat", "is not executable"},
                                                        {"gone.exe", "was not found"}}) {
    port.run(utf8Of(base / name), WindowStyle::minimizedNoFocus);
    ASSERT_TRUE(runUntil([&] { return !troubles.empty(); })) << name;
    EXPECT_THAT(troubles.front(), HasSubstr(problem)) << name;
    troubles.clear();
  }
  run(" -sleep 200");
  EXPECT_FALSE(runUntil([&] { return !troubles.empty(); }, 1s));
}

TEST(Machine, AnswersForItself) {
  PollLoop loop;
  NativeLocalHost localHost(loop);
  std::optional<LocalHostAnswer> answer;
  const auto lookUp =
      localHost.localHostAddress([&](const LocalHostAnswer& told) { answer = told; });
  ASSERT_TRUE(loop.runUntil([&] { return answer.has_value(); }, 20s));
  const auto echo = makeEcho(loop);
  std::vector<EchoOutcome> outcomes;
  const auto add = [&](const EchoOutcome& outcome) { outcomes.push_back(outcome); };
  const auto nobody = echo->send(0, "data", 200ms, add);
  ASSERT_TRUE(loop.runUntil([&] { return outcomes.size() == 1; }, 20s));
  EXPECT_EQ(outcomes[0].kind, EchoOutcome::Kind::noReply);
  const auto own = echo->send(0x0100007F, "data", 2s, add);
  ASSERT_TRUE(loop.runUntil([&] { return outcomes.size() == 2; }, 20s));
  RecordProperty("echo", static_cast<int>(outcomes[1].kind));
  echo->send(0x0100007F, "data", 2s, [](const EchoOutcome&) { FAIL(); }).reset();
  loop.runUntil([] { return false; }, 300ms);
}

TEST(Machine, RegistryHasWhatTheSystemKeeps) {
  const auto registry = makeRegistry();
  const std::uint32_t machine = 0x80000002;
  const auto key =
      registry->RegOpenKeyExA(machine, "Software\\Microsoft\\Windows NT\\CurrentVersion");
  ASSERT_TRUE(key);
  const auto value = registry->RegQueryValueExA(*key, "SystemRoot", 260);
  ASSERT_TRUE(value);
  EXPECT_THAT(value->bytes, HasSubstr(":\\"));
  EXPECT_FALSE(registry->RegQueryValueExA(*key, "SystemRoot", 2));
  EXPECT_FALSE(registry->RegOpenKeyExA(machine, "Software\\None"));
  registry->RegCloseKey(*key);
}

}  // namespace
}  // namespace kelvaron::testing
