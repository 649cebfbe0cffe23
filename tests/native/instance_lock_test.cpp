// The instance lock between processes, and the folders it refuses.
#include "native/instance_lock.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace kelvaron::testing {
namespace {

namespace fs = std::filesystem;

class InstanceLockTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "kelvaron-lock-XXXXXX").string();
    ASSERT_NE(::mkdtemp(name.data()), nullptr);
    base = name;
    folder = base / "session";
  }
  void TearDown() override { fs::remove_all(base); }

  fs::path base;
  fs::path folder;
};

TEST_F(InstanceLockTest, ProcessesExcludeEachOtherUntilOneDies) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(::pipe(pipe.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const InstanceLock lock(folder);
    const char answer = lock.held() ? 'y' : 'n';
    if (::write(pipe[1], &answer, 1) == 1) ::pause();
    ::_exit(1);
  }
  char answer = 0;
  ASSERT_EQ(::read(pipe[0], &answer, 1), 1);
  EXPECT_EQ(answer, 'y');
  {
    const InstanceLock second(folder);
    EXPECT_FALSE(second.held());
    EXPECT_TRUE(second.takenByAnother());
    EXPECT_EQ(second.problem(), "Kelvaron is already running");
  }
  ASSERT_EQ(::kill(child, SIGKILL), 0);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  const InstanceLock third(folder);
  EXPECT_TRUE(third.held()) << third.problem();
  EXPECT_EQ(third.problem(), "");
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  ::close(pipe[0]);
  ::close(pipe[1]);
}

TEST_F(InstanceLockTest, EndsWithItsObject) {
  {
    const InstanceLock first(folder);
    EXPECT_TRUE(first.held());
    EXPECT_TRUE(InstanceLock(folder).takenByAnother());
  }
  EXPECT_TRUE(InstanceLock(folder).held());
}

TEST_F(InstanceLockTest, RefusesFoldersThatAreNotTheUsersOwn) {
  const fs::path foreign = ::geteuid() == 0 ? base / "foreign" : "/usr";
  if (::geteuid() == 0) {
    fs::create_directory(foreign);
    ASSERT_EQ(::chown(foreign.c_str(), 12345, 12345), 0);
  }
  fs::create_directory(base / "open");
  fs::permissions(base / "open", fs::perms::all);
  fs::create_directory_symlink(base / "open", base / "link");
  fs::create_directory(base / "trap");
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

TEST_F(InstanceLockTest, SessionFolderFollowsTheEnvironment) {
  const std::string fallback = "/tmp/kelvaron-" + std::to_string(::getuid());
  const std::pair<std::string, fs::path> cases[] = {
      {base.string(), base / "kelvaron"},
      {(base / "missing").string(), fallback},
      {"relative", fallback},
      {"", fallback},
  };
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
