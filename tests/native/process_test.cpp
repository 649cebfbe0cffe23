// Real programs started, failing, ending and left alone.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "native/file_descriptor.h"
#include "native/native_process.h"
#include "tests/support/poll_loop.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr auto kPatience = 20s;

std::string contents(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::ptrdiff_t openDescriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

/// A folder with an engine "zdoom.exe" that records its starts; "@" in texts stands for it.
class Processes : public ::testing::Test {
 protected:
  void SetUp() override {
    install("zdoom.exe");
    listen();
  }

  void listen() {
    port->onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  }
  void install(const std::string& name, const std::string& plan = "") const {
    fs::create_directories((base / name).parent_path());
    fs::create_symlink(KELVARON_RECORDING_ENGINE, base / name);
    file(name + ".plan", plan, fs::perms::owner_all);
  }
  void file(const std::string& name, const std::string& text, fs::perms permissions) const {
    std::ofstream(base / name) << text;
    fs::permissions(base / name, permissions);
  }
  std::string placed(std::string text) const {
    for (std::size_t at = 0; (at = text.find('@', at)) != std::string::npos;) {
      text.replace(at, 1, base.string());
    }
    return text;
  }
  void run(const std::string& command) const {
    port->run(placed(command), WindowStyle::maximizedFocus);
  }
  bool runUntil(const std::function<bool()>& done) { return loop.runUntil(done, kPatience); }
  bool runUntilThere(const std::string& name) {
    return runUntil([&] { return fs::exists(base / name); });
  }
  /// Turns until every started program has been taken leave of.
  bool runUntilNoChild() {
    return runUntil([] { return ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) != 0; });
  }

  TemporaryFolder folder;
  fs::path base = fs::canonical(folder.path());
  PollLoop loop;
  std::unique_ptr<NativeProcessPort> port = std::make_unique<NativeProcessPort>(loop);
  std::vector<std::string> troubles;
};

TEST_F(Processes, ArgumentsArriveAsTheyStand) {
  install("my games/g\xC3\xBCnter.exe");
  fs::create_directories(base / "wads");
  file("wads/doom2.wad", "", fs::perms::owner_all);
  file("wads/-x", "", fs::perms::owner_all);
  run("@\\MY games\\G\xDCNTER.EXE -IWAD @/WADS\\DOOM2.WAD -file @/wads/-X $(touch @/made) "
      "`touch @/made`; \"a b\" a\ntouch @/made \xA5 +exec @/made -record @\\kvdemo -host 2\r\n");
  ASSERT_TRUE(runUntilThere("my games/g\xC3\xBCnter.exe.started"));
  const std::string started = contents(base / "my games/g\xC3\xBCnter.exe.started");
  EXPECT_EQ(started.substr(started.find("signals")),
            placed("signals default\n-IWAD\n@/wads/doom2.wad\n-file\n@/wads/-x\n$(touch\n@/made)\n"
                   "`touch\n@/made`;\n\"a\nb\"\na<0A>touch\n@/made\n\xC2\xA5\n+exec\n@/made\n"
                   "-record\n@/kvdemo\n-host\n2\n"));
  EXPECT_TRUE(runUntilNoChild());
  EXPECT_FALSE(fs::exists(base / "made"));
  EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(Processes, ProgramGetsACleanStart) {
  const FileDescriptor leaky(::open("/dev/null", O_RDONLY));
  const auto before = openDescriptors();
  sigset_t blocked;
  sigset_t previous;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &blocked, &previous);
  auto* const ignored = ::signal(SIGPIPE, SIG_IGN);
  run("@/zdoom.exe");
  ::signal(SIGPIPE, ignored);
  ::sigprocmask(SIG_SETMASK, &previous, nullptr);
  ASSERT_TRUE(runUntilThere("zdoom.exe.started"));
  EXPECT_EQ(contents(base / "zdoom.exe.started"),
            "descriptors 0 1 2\nfolder " + fs::current_path().string() +
                "\ninput at its end\nsession own\nsignals default\n");
  EXPECT_TRUE(runUntilNoChild());
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Processes, StartsThatFail) {
  file("text.exe", "x", fs::perms::owner_read);
  file("noise.exe", "\x01\x02", fs::perms::owner_all);
  file("empty.exe", "", fs::perms::owner_all);
  file("script.exe", "#!/no/such/interpreter\n", fs::perms::owner_all);
  fs::create_directories(base / "sub.exe");
  fs::create_symlink(base / "gone", base / "broken.exe");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", "No program was started: none is chosen yet."},
      {" -connect 127.0.0.1", "No program was started: none is chosen yet."},
      {"@/None.EXE -host 2", "@/None.EXE was not found."},
      {"@/broken.exe", "@/broken.exe was not found."},
      {"@/text.exe", "@/text.exe is not executable."},
      {"@/sub.exe", "@/sub.exe is a folder."},
      {"@/noise.exe", "@/noise.exe could not be read as a program."},
      {"@/empty.exe", "@/empty.exe could not be read as a program."},
      {"@/script.exe", "@/script.exe needs a program to run it that this system lacks."},
      {"C:\\GAMES\\ZDOOM.EXE",
       "C:\\GAMES\\ZDOOM.EXE was not found: this system has no drives, only folders such as "
       "/home."},
      {"/a\n\x01 b", "/a?? b was not found."},
      {std::string(400, 'y'), std::string(300, 'y') + "... was not found."},
      {"@/zdoom.exe " + std::string(3'000'000, 'x'),
       "@/zdoom.exe was not started: the command is too long."},
      {std::string("@/zdoom.exe a\0b", 15),
       "@/zdoom.exe was not started: an argument holds a character that no program can take."},
  };
  const auto before = openDescriptors();
  for (const auto& [command, expected] : cases) {
    SCOPED_TRACE(expected);
    troubles.clear();
    run(command);
    EXPECT_THAT(troubles, IsEmpty()) << "told before the loop's turn";
    ASSERT_TRUE(runUntil([&] { return !troubles.empty(); }));
    EXPECT_THAT(troubles, ElementsAre(placed(expected)));
  }
  // Whoever started it can say so in its own way: at once, and when it ends early.
  file("bad.exe", "#!/bin/sh\nexit 3\n", fs::perms::owner_all);
  for (const char* command : {"@/None.EXE", "@/bad.exe"}) {
    bool failed = false;
    troubles.clear();
    port->run(placed(command), WindowStyle::maximizedFocus, [&] { failed = true; });
    EXPECT_TRUE(runUntil([&] { return failed; })) << command;
    EXPECT_THAT(troubles, IsEmpty());
  }
  EXPECT_FALSE(fs::exists(base / "zdoom.exe.started"));
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Processes, StartWithoutAFreeDescriptor) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer looks at memory through a descriptor of its own";
#endif
  rlimit usual{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
  const rlimit few{3, usual.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  run("@/zdoom.exe");
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
  ASSERT_TRUE(runUntil([&] { return !troubles.empty(); }));
  EXPECT_THAT(troubles,
              ElementsAre(placed("@/zdoom.exe could not be started: Too many open files.")));
}

TEST_F(Processes, EarlyErrorsTellTheLastLines) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"exit 3", " ended with the error 3."},
      {"sleep 1000\nexit 1", " ended with the error 1."},
      {"kill 9", " was ended by signal 9 (Killed)."},
      {"say 1\nsay 2\nsay 3\nwarn 4\nsay\nsay f\xC3\xBCnf\tX\nsay 6\x1B[0m\x7F\nexit 2",
       " ended with the error 2.\r\nThe last that it said:\r\n2\r\n3\r\n4\r\nf\xFCnf X\r\n6 [0m "},
      {"say " + std::string(30'000, 'x') + "\nexit 2",
       " ended with the error 2.\r\nThe last that it said:\r\n" + std::string(200, 'x') + "..."},
  };
  const auto before = openDescriptors();
  for (const auto& [plan, expected] : cases) {
    SCOPED_TRACE(expected);
    troubles.clear();
    file("zdoom.exe.plan", plan, fs::perms::owner_all);
    run("@/ZDOOM.EXE");
    ASSERT_TRUE(runUntil([&] { return !troubles.empty(); }));
    EXPECT_THAT(troubles, ElementsAre(placed("@/ZDOOM.EXE") + expected));
  }
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Processes, LaterErrorsAndGoodEndsSayNothing) {
  install("good.exe", "say bye\nexit 0");
  install("late.exe", "say late\nsleep 2300\nmark ended\nexit 3");
  const auto before = openDescriptors();
  run("@/good.exe");
  run("@/late.exe");
  ASSERT_TRUE(runUntilThere("ended"));
  EXPECT_TRUE(runUntilNoChild());
  EXPECT_THAT(troubles, IsEmpty());
  EXPECT_EQ(openDescriptors(), before);
}

TEST_F(Processes, EarlyErrorIsToldByALoopThatWasHeldUp) {
  install("bad.exe", "exit 4");
  run("@/bad.exe");
  std::this_thread::sleep_for(NativeProcessPort::kEarly + 100ms);
  ASSERT_TRUE(runUntil([&] { return !troubles.empty(); }));
  EXPECT_THAT(troubles.front(), HasSubstr("error 4"));
}

TEST_F(Processes, ProgramOutlivesTheClientAndCanGoOnPrinting) {
  install("long.exe", "sleep 400\nsay still\nwarn here\nmark ended");
  const pid_t client = ::fork();
  if (client == 0) {
    run("@/long.exe");
    ::_exit(0);
  }
  ASSERT_EQ(::waitpid(client, nullptr, 0), client);
  EXPECT_FALSE(fs::exists(base / "ended"));
  EXPECT_TRUE(runUntilThere("ended"));
}

TEST_F(Processes, HandlerMayEndThePort) {
  install("bad.exe", "exit 1");
  for (const char* command : {"@/none", "@/bad.exe"}) {
    port = std::make_unique<NativeProcessPort>(loop);
    int told = 0;
    port->onTrouble = [&](const std::string&) {
      port.reset();
      ++told;
    };
    run(command);
    ASSERT_TRUE(runUntil([&] { return told == 1; }));
  }
}

TEST_F(Processes, APortThatHasGoneTellsNothingMore) {
  install("bad.exe", "sleep 50\nexit 1");
  run("@/none");
  run("@/bad.exe");
  port.reset();
  loop.runUntil([] { return false; }, 300ms);
  EXPECT_THAT(troubles, IsEmpty());
  while (::waitpid(-1, nullptr, 0) > 0) {
  }
}

TEST_F(Processes, ManyAtOnceLeaveNothingBehind) {
  install("bad.exe", "exit 1");
  const auto before = openDescriptors();
  for (int start = 0; start < 50; ++start) run("@/bad.exe");
  ASSERT_TRUE(runUntil([&] { return troubles.size() == 50; }));
  EXPECT_TRUE(runUntilNoChild());
  EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace kelvaron::testing
