// The program itself: exit codes, messages, a clean end on a signal.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>

#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

const std::string kProgram = KELVARON_SERVER_PROGRAM;

struct Ended {
  std::string output;
  int code;
};

Ended run(const std::string& arguments, const std::string& before = "") {
  std::FILE* pipe = ::popen((before + kProgram + " " + arguments + " 2>&1").c_str(), "r");
  Ended ended{"", -1};
  if (pipe == nullptr) return ended;
  std::array<char, 1024> block{};
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), pipe)) {
    ended.output.append(block.data(), count);
  }
  ended.code = WEXITSTATUS(::pclose(pipe));
  return ended;
}

TEST(Program, SaysWhatIsWrong) {
  TemporaryFolder folder;
  const RunningServer other(folder.path());
  const std::string withFolder = " --folder " + folder.path().string();
  const std::vector<std::tuple<std::string, int, std::string>> cases = {
      {"--help", 0, "Usage: kelvaron-server"},
      {"--prot 1", 2, "unknown option \"--prot\""},
      {"--address 127.0.0.1 --port " + std::to_string(other.port()) + withFolder, 1,
       "another program has this port"},
      {"--address 192.0.2.1 --port 0" + withFolder, 1, "can't listen on 192.0.2.1:0"},
      {"--port 0 --folder /dev/null/x", 1, "/dev/null/x: can't be created"},
      {"--add-moderator bob b@example.org </dev/null" + withFolder, 2, "the password"},
  };
  for (const auto& [arguments, code, text] : cases) {
    const Ended ended = run(arguments);
    EXPECT_EQ(ended.code, code) << arguments << '\n' << ended.output;
    EXPECT_NE(ended.output.find(text), std::string::npos) << ended.output;
  }
}

TEST(Program, AddsAModeratorWhoCanUseThePassword) {
  TemporaryFolder folder;
  const Ended ended = run("--add-moderator bob b@example.org --folder " + folder.path().string(),
                          "printf 'a b\\n' | ");
  ASSERT_EQ(ended.code, 0) << ended.output;
  const RunningServer running(folder.path());
  Peer bob(running.port(), "bob");
  bob.send("RequestOP\tbob\tb@example.org\ta b");
  EXPECT_TRUE(
      bob.gets("STATUSTEXT\t8454016\tModerator Privlidges Granted - You are now a moderator."));
}

TEST(Program, TellsWhereItListensAndEndsOnASignal) {
  TemporaryFolder folder;
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(ends[1], STDOUT_FILENO);
    ::execl(kProgram.c_str(), kProgram.c_str(), "--address", "127.0.0.1", "--port", "0", "--folder",
            folder.path().c_str(), nullptr);
    ::_exit(127);
  }
  ::close(ends[1]);
  std::FILE* output = ::fdopen(ends[0], "r");
  std::array<char, 1024> line{};
  ASSERT_NE(std::fgets(line.data(), static_cast<int>(line.size()), output), nullptr);
  const std::string start = "kelvaron-server listens on 127.0.0.1:";
  const std::string told = line.data();
  ASSERT_TRUE(told.starts_with(start)) << told;
  EXPECT_TRUE(told.ends_with(", folder " + folder.path().string() + "\n")) << told;
  Peer alice(static_cast<std::uint16_t>(std::stoi(told.substr(start.size()))), "alice");
  ::kill(child, SIGHUP);
  alice.lines();
  ::kill(child, SIGTERM);
  EXPECT_TRUE(alice.isClosed());
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  std::fclose(output);
}

}  // namespace
}  // namespace kelvaron::server
