// The program itself: exit codes, messages, a clean end on a signal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/local/datagram_protocol.hpp>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <utility>

#include "base/non_copyable.h"
#include "server/file.h"
#include "server/log_writer.h"
#include "server/text.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

const std::string kProgram = KELVARON_SERVER_PROGRAM;

/// The exit code and all that is printed; what asks for a password gets one.
std::pair<int, std::string> run(const std::string& arguments) {
  const std::string command = "printf 'a b\\n' | " + kProgram + " " + arguments + " 2>&1";
  std::FILE* pipe = ::popen(command.c_str(), "r");
  std::string output;
  for (int byte = 0; (byte = std::fgetc(pipe)) != EOF;) output += static_cast<char>(byte);
  return {WEXITSTATUS(::pclose(pipe)), output};
}

TEST(Program, SaysWhatIsWrong) {
  TemporaryFolder folder;
  const TemporaryFolder broken;
  const TemporaryFolder fresh;
  std::ofstream(broken.path() / "settings") << "# x\nspeed = 3\nline_limit = 1\n";
  std::ofstream(broken.path() / "reserved") << "a b\nc d\n";
  std::ofstream(broken.path() / "bans") << "user\nnick\tx\t\t\t\t\tsoon\n";
  std::ofstream(broken.path() / "motd") << "Jos\xE9\nJos\xC3\xA9\n";
  const RunningServer other(folder.path());
  const std::string withFolder = " --folder " + folder.path().string();
  const std::vector<std::tuple<std::string, int, std::string>> cases = {
      {"--help", 0, "Usage: kelvaron-server"},
      {"--version", 0, "kelvaron-server 4."},
      {"--check" + withFolder, 0, "is in order: 0 moderators, 0 bans"},
      {"--check --folder " + broken.path().string(), 1,
       "kelvaron-server: settings, line 2: there is no setting \"speed\"\n"
       "kelvaron-server: settings, line 3: line_limit must be a number from 256 to 16777216\n"
       "kelvaron-server: reserved, line 1: \"a b\" can't be a nickname\n"
       "kelvaron-server: reserved, line 2: \"c d\" can't be a nickname\n"
       "kelvaron-server: bans, line 1: a line must hold user, nick or address, then a nickname, an "
       "address, a told address, by whom, a reason and, if wanted, an end, separated by TAB\n"
       "kelvaron-server: bans, line 2: the end must read as 2026-12-31 or 2026-12-31T18:30, in "
       "UTC\n"
       "kelvaron-server: motd, line 2: holds characters that are not in code page 1252"},
      {"--status --folder " + fresh.path().string(), 1, "no server runs on this folder"},
      {"--port 0" + withFolder, 1, "another server runs on this folder"},
      {"--ban eve", 2, "--ban needs a nickname or an address, and a reason"},
      {"--ban eve spam --until soon", 2, "--until, behind --ban, reads as 2026-12-31"},
      {"--ban eve spam --until 2999-02-31", 2, "--until, behind --ban, reads as 2026-12-31"},
      {"--ban eve spam --until 2020-01-01", 2, "--until is over already"},
      {"--ban 192.0.2.0/24 spam", 2, "\"192.0.2.0/24\" is no address of one machine"},
      {"--ban 192.0.2.300 spam", 2, "is no address of one machine"},
      {"--ban 127.0.0.1 spam", 2, "is this machine itself, which no ban keeps out"},
      {"--log /dev/null/x --port 0 --folder " + fresh.path().string(), 1,
       "/dev/null/x: can't be written: Not a directory"},
      {"--check --folder /dev/null/x", 1, "/dev/null/x: there is no such folder"},
      {"--unban eve" + withFolder, 1, "no ban of eve"},
      {"--remove-moderator eve" + withFolder, 1, "eve is no moderator"},
      {"--add-moderator \xC5\x81uk l@example.org", 2,
       "holds a character that is not in code page 1252"},
      {"--unban \xFF", 2, "holds a character that is not in code page 1252"},
      {"--prot 1", 2, "unknown option \"--prot\""},
      {"--address 127.0.0.1 --port " + std::to_string(other.port()) + " --folder " +
           fresh.path().string(),
       1, "another program has this port"},
      {"--address 192.0.2.1 --port 0 --folder " + fresh.path().string(), 1,
       "can't listen on 192.0.2.1:0"},
      {"--port 0 --folder /dev/null/x", 1, "/dev/null/x: can't be created"},
      {"--add-moderator bob b@example.org" + withFolder + " </dev/null", 2, "the password"},
  };
  for (const auto& [arguments, code, text] : cases) {
    const auto& [ended, output] = run(arguments);
    EXPECT_EQ(ended, code) << arguments << '\n' << output;
    EXPECT_NE(output.find(text), std::string::npos) << output;
  }
}

/// The program on a folder of its own, with its log in a file.
class RunningProgram : NonCopyable {
 public:
  RunningProgram() {
    const std::string start = "echo $$; exec " + kProgram + " --address 127.0.0.1 --port 0" +
                              inFolder + " --log " + log().string();
    output_ = ::popen(start.c_str(), "r");
    process_ = std::stoi(line());
    told = line();
    port = static_cast<std::uint16_t>(std::stoi(told.substr(told.rfind("127.0.0.1:") + 10)));
  }
  ~RunningProgram() {
    if (output_ != nullptr) end();
  }

  void signal(int number) const { ::kill(process_, number); }
  /// Its exit code, or -1 when it ended otherwise.
  int end() {
    signal(SIGTERM);
    const int status = ::pclose(std::exchange(output_, nullptr));
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  bool logs(const std::string& text) const {
    return eventually(
        [&] { return server::readFile(log()).value_or("").find(text) != std::string::npos; });
  }
  std::filesystem::path log() const { return folder.path() / "log"; }
  auto command(const std::string& arguments) const { return run(arguments + inFolder); }

  TemporaryFolder folder;
  const std::string inFolder = " --folder " + folder.path().string();
  std::string told;
  std::uint16_t port = 0;

 private:
  std::string line() const {
    std::array<char, 1024> text{};
    EXPECT_NE(std::fgets(text.data(), static_cast<int>(text.size()), output_), nullptr);
    return text.data();
  }
  std::FILE* output_ = nullptr;
  pid_t process_ = 0;
};

TEST(Program, TellsWhereItListensAndTheRoomThatItEnds) {
  RunningProgram program;
  EXPECT_TRUE(program.told.starts_with("kelvaron-server listens on 127.0.0.1:")) << program.told;
  EXPECT_TRUE(program.told.ends_with(", folder " + program.folder.path().string() + "\n"));
  program.signal(SIGUSR1);
  EXPECT_TRUE(program.logs("statistics of ")) << "also where nothing happened";
  EXPECT_TRUE(program.logs("kelvaron-server 4."));
  Peer alice(program.port, "alice");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(program.end(), 0);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  EXPECT_TRUE(program.logs("the server ends: signal TERM"));
  EXPECT_TRUE(
      alice.gets("STATUSTEXT\t8454143\t[Server] The server ends now. Try to connect again later."));
  EXPECT_TRUE(alice.isClosed());
}

TEST(Program, TellsItsManagerWhenItListens) {
  const TemporaryFolder folder;
  using asio::local::datagram_protocol;
  asio::io_context io;
  const auto place = (folder.path() / "manager").string();
  datagram_protocol::socket manager(io, datagram_protocol::endpoint(place));
  ::setenv("NOTIFY_SOCKET", place.c_str(), 1);
  const RunningProgram program;
  ::unsetenv("NOTIFY_SOCKET");
  ASSERT_TRUE(eventually([&] { return manager.available() > 0; }));
  std::array<char, 64> told{};
  const std::size_t size = manager.receive(asio::buffer(told));
  EXPECT_EQ(std::string_view(told.data(), size), "READY=1");
}

TEST(Program, CommandsAndSignalsReachARunningServer) {
  const RunningProgram program;
  Peer bob(program.port, "bob");
  ASSERT_EQ(program.command("--add-moderator bob b@example.org").first, 0);
  std::ofstream(program.folder.path() / "bans") << "nick\teve\t\t\tann\tspam\n";
  const auto becomes = [&](const std::string& answer) {
    return eventually([&] { return Peer::loginAnswer(program.port, "eve") == answer; });
  };
  EXPECT_TRUE(becomes("banned"));
  EXPECT_NE(program.command("--bans").second.find("eve, by ann: spam"), std::string::npos);
  EXPECT_EQ(program.command("--unban EVE").first, 0);
  EXPECT_TRUE(becomes("Userscl"));
  EXPECT_TRUE(bob.gets(kGranted, "RequestOP\tbob\tb@example.org\ta b"));
  EXPECT_EQ(program.command("--remove-moderator bob").first, 0);

  // UTF-8 here, one byte a character in the files.
  const std::string jose = "Jos\xC3\xA9";
  EXPECT_EQ(program.command("--add-moderator " + jose + " j@example.org").second.find(jose), 0U);
  EXPECT_EQ(Store(program.folder.path()).moderators().back().nick, "Jos\xE9");
  EXPECT_EQ(program.command("--remove-moderator JOS\xC3\x89").first, 0);
  std::ofstream(program.folder.path() / "bans") << "nick\tJos\xE9\t\t\tann\tspam\n";
  EXPECT_EQ(program.command("--bans").second, jose + ", by ann: spam\n");
  EXPECT_EQ(program.command("--unban " + jose).second.find("1 ban of " + jose), 0U);

  std::ofstream(program.folder.path() / "settings") << "line_limit = 256\n";
  std::ofstream(program.folder.path() / "motd") << jose << '\n';
  program.signal(SIGHUP);
  ASSERT_TRUE(program.logs("the files of the folder are read anew"));
  EXPECT_TRUE(program.logs("motd, line 1: holds characters"));
  Peer cy(program.port, "cy");
  cy.send("Message\tcy: \t" + std::string(300, 'x'));
  EXPECT_TRUE(cy.isClosed());
}

TEST(Program, ABanByHandOrCommandDropsWhoIsThereAndIsLogged) {
  const RunningProgram program;
  Peer eve(program.port, "eve");
  Peer mallory(program.port, "mallory");
  const Peer bob(program.port, "bob");
  std::ofstream(program.folder.path() / "bans") << "nick\teve\t\t\tann\tspam\n"
                                                   "nick\tbob\t\t\tann\told\t2020-01-01\n";
  EXPECT_TRUE(eve.gets("BANUSER\tann\tspam"));
  EXPECT_TRUE(mallory.gets("Announce\t[Server] eve was banned by ann (spam)"));
  ::setenv("SUDO_USER", "ann", 1);
  const auto& [code, told] = program.command("--ban MALLORY 'no manners' --until 2999-12-31T18:30");
  EXPECT_EQ(code, 0) << told;
  EXPECT_TRUE(mallory.gets("BANUSER\tann\tno manners"));
  EXPECT_TRUE(
      program.command("--bans").second.ends_with(": no manners, until 2999-12-31T18:30 UTC\n"));
  EXPECT_EQ(Peer::loginAnswer(program.port, "bob"), "DOUBLE") << "that ban is over";
  EXPECT_EQ(program.command("--unban eve").first, 0);
  for (const char* logged : {"ban set: eve, by ann: spam", "ban set: MALLORY, by ann: no manners",
                             "ann commands: --unban eve", "ban lifted: eve"}) {
    EXPECT_TRUE(program.logs(logged)) << logged;
  }
}

TEST(Program, TellsItsStatusAndOpensItsLogAnew) {
  const RunningProgram program;
  const Peer bob(program.port, "bob");
  const auto& [code, text] = program.command("--status");
  EXPECT_EQ(code, 0);
  EXPECT_NE(text.find(" UTC: 1 clients, "), std::string::npos) << text;
  const auto& [sameCode, json] = program.command("--status=json");
  EXPECT_TRUE(json.starts_with("{\"version\": \"4.") && json.ends_with("\"problems\": []}\n"))
      << json;
  EXPECT_NE(json.find("\"clients\": 1, "), std::string::npos) << json;
  std::filesystem::rename(program.log(), program.folder.path() / "log.1");
  program.signal(SIGHUP);
  EXPECT_TRUE(program.logs("read anew"));
}

// Somebody started it with a pipe to a program that has stopped reading.
TEST(Log, AFullPipeAndAFullDiskLoseLinesAndNothingElse) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  LogWriter log(ends[1]);
  for (int i = 0; i < 5000; ++i) log.write("line " + std::to_string(i) + std::string(100, '.'));
  std::string read(1'000'000, '\0');
  read.resize(static_cast<std::size_t>(::read(ends[0], read.data(), read.size())));
  log.write("afterwards");
  std::array<char, 4096> rest{};
  const std::string tail(rest.data(),
                         static_cast<std::size_t>(::read(ends[0], rest.data(), rest.size())));
  EXPECT_NE(tail.find(" lines of the log were lost\n"), std::string::npos) << tail;
  EXPECT_TRUE(tail.ends_with(" afterwards\n")) << tail;
  const int full = ::open("/dev/full", O_WRONLY);
  LogWriter toFull(full);
  toFull.write("nowhere");
  for (const int each : {ends[0], ends[1], full}) ::close(each);
}

TEST(Log, WhatStrangersToldIsShortAndUtf8) {
  EXPECT_EQ(forLog("na\xEFve \x80\x81\n"), "na\xC3\xAFve \xE2\x82\xAC  ");
  EXPECT_EQ(forLog(std::string(1000, '\xFF')).size(), 128U);
}

}  // namespace
}  // namespace kelvaron::server
