// Real programs started, failing, ending and left alone.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <thread>

#include "native/disk_file.h"
#include "native/native_process.h"
#include "tests/native/native_test.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::ptrdiff_t openDescriptors() {
  return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

/// A folder with an engine "zdoom.exe" that records its starts. No test may leave anything behind.
class Processes : public DiskTest {
 protected:
  void SetUp() override {
    install("zdoom.exe");
    port->onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  }
  void TearDown() override {
    EXPECT_TRUE(
        runUntil([] { return ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) != 0; }));
    EXPECT_EQ(openDescriptors(), before);
  }
  void install(const std::string& name, const std::string& plan = "") const {
    fs::create_symlink(KELVARON_RECORDING_ENGINE, base / name);
    make(name + ".plan", plan);
  }
  void run(const std::string& command) const {
    port->run(placed(command), WindowStyle::maximizedFocus);
  }
  bool runUntil(const std::function<bool()>& done) { return loop.runUntil(done, 20s); }
  bool runUntilThere(const std::string& name) {
    return runUntil([&] { return fs::exists(base / name); });
  }
  bool runUntilTrouble() {
    return runUntil([&] { return !troubles.empty(); });
  }

  PollLoop loop;
  std::unique_ptr<NativeProcessPort> port = std::make_unique<NativeProcessPort>(loop);
  std::vector<std::string> troubles;
  std::ptrdiff_t before = openDescriptors();
};

TEST_F(Processes, ProgramGetsItsArgumentsAndACleanStart) {
  const FileDescriptor leaky(::open("/dev/null", O_RDONLY));
  sigset_t blocked;
  sigset_t previous;
  ::sigemptyset(&blocked);
  ::sigaddset(&blocked, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &blocked, &previous);
  auto* const ignored = ::signal(SIGPIPE, SIG_IGN);
  run("@\\ZDOOM.EXE $(touch @/made) `touch @/made`; \"a b\" a\ntouch @/made \xA5 -host 2\r\n");
  ::signal(SIGPIPE, ignored);
  ::sigprocmask(SIG_SETMASK, &previous, nullptr);
  ASSERT_TRUE(runUntilThere("zdoom.exe.started"));
  EXPECT_EQ(contents("zdoom.exe.started"),
            "descriptors 0 1 2\nfolder " + fs::current_path().string() +
                "\ninput at its end\nsession own\nsignals default\n" +
                placed("$(touch\n@/made)\n`touch\n@/made`;\n\"a\nb\"\na<0A>touch\n@/made\n"
                       "\u00A5\n-host\n2\n"));
  EXPECT_FALSE(fs::exists(base / "made"));
  EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(Processes, StartsThatFail) {
  make("noise.exe", "\x01\x02", fs::perms::owner_all);
  make("empty.exe", "", fs::perms::owner_all);
  make("script.exe", "#!/no/such/interpreter\n", fs::perms::owner_all);
  const std::pair<std::string, std::string> cases[] = {
      {"", "No program was started: none is chosen yet."},
      {" -connect 127.0.0.1", "No program was started: none is chosen yet."},
      {"@/None.EXE -host 2", "@/None.EXE was not found."},
      {"@/noise.exe", "@/noise.exe could not be read as a program."},
      {"@/empty.exe", "@/empty.exe could not be read as a program."},
      {"@/script.exe", "@/script.exe needs a program to run it that this system lacks."},
      {"/a\n\x01 b", "/a?? b was not found."},
      {std::string(400, 'y'), std::string(300, 'y') + "... was not found."},
      {"@/zdoom.exe " + std::string(3'000'000, 'x'),
       "@/zdoom.exe was not started: the command is too long."},
  };
  for (const auto& [command, expected] : cases) {
    SCOPED_TRACE(expected);
    troubles.clear();
    run(command);
    EXPECT_THAT(troubles, IsEmpty()) << "told before the loop's turn";
    ASSERT_TRUE(runUntilTrouble());
    EXPECT_THAT(troubles, ElementsAre(placed(expected)));
  }
  EXPECT_FALSE(fs::exists(base / "zdoom.exe.started"));
}

TEST_F(Processes, WhoeverStartedItCanTellOfItsFailure) {
  install("bad.exe", "exit 3");
  for (const char* command : {"@/None.EXE", "@/bad.exe"}) {
    bool failed = false;
    port->run(placed(command), WindowStyle::maximizedFocus, [&] { failed = true; });
    EXPECT_TRUE(runUntil([&] { return failed; })) << command;
    EXPECT_THAT(troubles, IsEmpty());
  }
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
  ASSERT_TRUE(runUntilTrouble());
  EXPECT_THAT(troubles,
              ElementsAre(placed("@/zdoom.exe could not be started: Too many open files.")));
}

TEST_F(Processes, EarlyErrorsTellTheLastLines) {
  const std::string kSaid = " ended with the error 2.\r\nThe last that it said:\r\n";
  const std::pair<std::string, std::string> cases[] = {
      {"exit 3", " ended with the error 3."},
      {"sleep 1000\nexit 1", " ended with the error 1."},
      {"kill 9", " was ended by signal 9 (Killed)."},
      {"say 1\nsay 2\nsay 3\nwarn 4\nsay\nsay f\u00FCnf\tX\nsay 6\x1B[0m\x7F\nexit 2",
       kSaid + "2\r\n3\r\n4\r\nf\xFCnf X\r\n6 [0m "},
      {"say " + std::string(30'000, 'x') + "\nexit 2", kSaid + std::string(200, 'x') + "..."},
  };
  for (const auto& [plan, expected] : cases) {
    SCOPED_TRACE(expected);
    troubles.clear();
    make("zdoom.exe.plan", plan);
    run("@/ZDOOM.EXE");
    ASSERT_TRUE(runUntilTrouble());
    EXPECT_THAT(troubles, ElementsAre(placed("@/ZDOOM.EXE") + expected));
  }
}

TEST_F(Processes, OfWhatIsPrintedTheLastPartIsKept) {
  std::string plan;
  for (int line = 0; line < 41; ++line) plan += "say " + std::string(1U << 20U, 'x') + "\n";
  install("loud.exe", plan + "say the end\nsleep 100\nexit 69");
  run("@/loud.exe");
  // The nameless file, while the program still has its pause.
  std::uintmax_t most = 0;
  ASSERT_TRUE(runUntil([&] {
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (fs::read_symlink(entry, gone).string().find("/kelvaron-") == std::string::npos) continue;
      most = std::max(most, fs::file_size(entry, gone));
    }
    return !troubles.empty();
  }));
  EXPECT_LE(most, 16U << 20U);
  EXPECT_GE(most, 8U << 20U);
  EXPECT_TRUE(troubles[0].ends_with("...\r\nthe end")) << troubles[0].substr(0, 200);
}

TEST_F(Processes, LaterErrorsAndGoodEndsSayNothingUnlessTheyAskForIt) {
  install("good.exe", "say bye\nexit 0");
  install("late.exe", "say late\nsleep 2300\nmark ended\nexit 3");
  install("told.exe", "sleep 2300\nsay the host has gone\nexit 69");
  run("@/good.exe");
  run("@/late.exe");
  run("@/told.exe");
  ASSERT_TRUE(runUntilThere("ended"));
  ASSERT_TRUE(runUntilTrouble());
  TearDown();
  EXPECT_THAT(troubles, ElementsAre(placed("@/told.exe ended with the error 69.\r\n"
                                           "The last that it said:\r\nthe host has gone")));
}

TEST_F(Processes, LeavingEndsWhatCaresForIt) {
  install("waits.exe", "await " + std::to_string(SIGURG) + "\nmark ended");
  install("other.exe", "sleep 300");
  run("@/other.exe");
  run("@/waits.exe now");
  ASSERT_TRUE(runUntilThere("awaiting"));
  for (const char* other : {"@/other.exe", "@/waits.exe"}) port->leave(placed(other));
  loop.runUntil([] { return false; }, 400ms);
  EXPECT_FALSE(fs::exists(base / "ended"));
  port->leave(placed("@/waits.exe now"));
  EXPECT_TRUE(runUntilThere("ended"));
  EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(Processes, EarlyErrorIsToldByALoopThatWasHeldUp) {
  install("bad.exe", "exit 4");
  run("@/bad.exe");
  std::this_thread::sleep_for(NativeProcessPort::kEarly + 100ms);
  EXPECT_TRUE(runUntilTrouble());
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
  for (int start = 0; start < 50; ++start) run("@/bad.exe");
  EXPECT_TRUE(runUntil([&] { return troubles.size() == 50; }));
}

}  // namespace
}  // namespace kelvaron::testing
