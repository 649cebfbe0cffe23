// The adapters, started as Kelvaron starts them, with stand-ins for the games.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <stdlib.h>
#include <sys/socket.h>

#include "native/disk_file.h"
#include "native/native_process.h"
#include "tests/native/native_test.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A game file: its kind, then a directory of names without content.
std::string gameFile(const std::string& kind, const std::vector<std::string>& names) {
  std::string bytes = kind + std::string{static_cast<char>(names.size()), 0, 0, 0, 12, 0, 0, 0};
  for (std::string name : names) {
    name.resize(8);
    bytes += std::string(8, '\0') + name;
  }
  return bytes;
}

/// One of the places where hosts are looked for, on an address that nothing else has.
class HostPlace {
 public:
  HostPlace(int type, std::uint16_t port) : socket_(::socket(AF_INET, type | SOCK_NONBLOCK, 0)) {
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_port = htons(port);
    ::inet_pton(AF_INET, port == 13209 && type == SOCK_STREAM ? "127.0.0.1" : "127.0.0.7",
                &place.sin_addr);
    const int on = 1;
    ::setsockopt(socket_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    EXPECT_EQ(::bind(socket_.get(), reinterpret_cast<sockaddr*>(&place), sizeof place), 0);
    if (type == SOCK_STREAM) ::listen(socket_.get(), 9);
  }
  /// A query, if there is one, gets an answer: the version, and how far the game is.
  void answer(const std::string& version, char state) {
    std::array<char, 2> query{};
    sockaddr_in asker{};
    socklen_t size = sizeof asker;
    auto* address = reinterpret_cast<sockaddr*>(&asker);
    if (::recvfrom(socket_.get(), query.data(), query.size(), 0, address, &size) != 2) return;
    ++queries;
    const std::string text = std::string("\0\x0E", 2) + version + '\0' + state + "\1\4";
    if (!version.empty()) ::sendto(socket_.get(), text.data(), text.size(), 0, address, size);
  }

  int queries = 0;

 private:
  FileDescriptor socket_;
};

constexpr std::uint16_t kChocolatePort = 2342;
constexpr std::uint16_t kDoomsdayPort = 13209;

class Adapters : public DiskTest {
 protected:
  void SetUp() override {
    fs::create_directory(games);
    install("chocolate-doom");
    ::setenv("KELVARON_GAMES", games.c_str(), 1);
    ::setenv("XDG_DATA_HOME", (base / "data").c_str(), 1);
    make("doom 1.wad", gameFile("IWAD", {"PLAYPAL", "E1M1", "E2M3"}));
    make("doom2.wad", gameFile("IWAD", {"PLAYPAL", "MAP01"}));
    make("tnt.wad", gameFile("IWAD", {"PLAYPAL", "MAP01", "REDTNT2"}));
    make("free.wad", gameFile("IWAD", {"FREEDOOM", "E1M1", "E4M1"}));
    make("own.wad", gameFile("PWAD", {"LONGNAME", "MAP07"}));
    make("text.wad", "a text that is no game");
    make("short.wad", "IWAD");
    make("cut.wad", std::string("IWAD\x09\0\0\0\x0C\0\0\0end", 15));
    port.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  }
  void TearDown() override {
    ::unsetenv("KELVARON_GAMES");
    ::unsetenv("XDG_DATA_HOME");
  }
  void install(const std::string& program, const std::string& plan = "") {
    fs::create_symlink(KELVARON_RECORDING_ENGINE, games / program);
    make("games/" + program + ".plan", plan);
  }

  void start(const std::string& command) {
    for (const auto& file : fs::directory_iterator(games)) {
      if (file.path().extension() == ".started") fs::remove(file);
    }
    troubles.clear();
    port.run(KELVARON_ENGINES "/" + placed(command), WindowStyle::maximizedFocus);
  }
  std::string trouble() {
    EXPECT_TRUE(runUntil([&] { return !troubles.empty(); }));
    return troubles.empty() ? "" : troubles.front();
  }
  /// What a program of the game was started with, in one line; empty when it wasn't.
  std::string startedWith(const std::string& program) const {
    std::ifstream record(games / (program + ".started"));
    std::string all;
    int number = 0;
    for (std::string line; std::getline(record, line);) {
      if (number++ >= 5) all += (all.empty() ? "" : " ") + line;
    }
    return all;
  }
  bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds time = 20s) {
    return loop.runUntil(done, time);
  }

  fs::path games = base / "games";
  PollLoop loop;
  NativeProcessPort port{loop};
  std::vector<std::string> troubles;
};

TEST_F(Adapters, SayItInTheWordsOfTheGame) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"zdoom.exe -iwad @/doom 1.wad", "-iwad @/doom 1.wad"},
      {"zdoom.exe -IWAD @\\DOOM2.WAD -skill 3 -warp 07 -host 3 -file @/own.wad @/doom2.wad\r\n",
       "-iwad @/doom2.wad -skill 3 -file @/own.wad @/doom2.wad -warp 07 "
       "-privateserver -server -nodes 3"},
      {"zdoom.exe -iwad @/doom2.wad -NoMonsters -nomusic -nosfx -respawn -altdeath -deathmatch "
       "-coop -fast -extratic -timer 20 -dup 2 -turbo 150 -skill 4",
       "-iwad @/doom2.wad -nomonsters -nomusic -nosfx -respawn -altdeath -deathmatch -fast "
       "-extratics 1 -timer 20 -dup 2 -turbo 150 -skill 4"},
      {"zdoom.exe -warp 23 -iwad @/doom 1.wad", "-iwad @/doom 1.wad -warp 2 3"},
      {"zdoom.exe -iwad @/doom 1.wad -warp 9", "-iwad @/doom 1.wad -warp 1 9"},
      {"zdoom.exe -iwad @/doom2.wad -warp 9", "-iwad @/doom2.wad -warp 9"},
      {"zdoom.exe -iwad @/doom 1.wad -warp M3", "-iwad @/doom 1.wad -warp 1 3"},
      {"zdoomgl.exe -paltex -3dfx -sprmaxsurf 4096 -width 640 -height 480 -iwad @/doom2.wad",
       "-width 640 -height 480 -iwad @/doom2.wad"},
  };
  for (const auto& [command, expected] : cases) {
    SCOPED_TRACE(command);
    start(command);
    std::string words;
    ASSERT_TRUE(runUntil([&, wanted = placed(expected)] {
      words = startedWith("chocolate-doom");
      return !troubles.empty() || words == wanted;
    })) << words;
    EXPECT_THAT(troubles, IsEmpty());
  }
}

TEST_F(Adapters, MoreThanFourPlayOnDoomsday) {
  install("doomsday", "load\nmark loaded");
  install("doomsday-server", "sleep 20000");
  start(
      "zdoomgl.exe -width 320 -height 240 -iwad @/tnt.wad -file @/own.wad -skill 4 -warp 07 "
      "-respawn -altdeath -timer 10 -nosfx -nomusic -fast -extratic -host 7");
  const std::string own = "-userdir @/data/kelvaron-engines/";
  const auto data = [&](const std::string& name) {
    return own + name + " -iwad @/data/kelvaron-engines/" + name +
           "/iwad -game doom2-tnt -nodiscovery -file @/own.wad";
  };
  const std::string server =
      placed(data("server-1") +
             " -stdout -port 13209 -def @/data/kelvaron-engines/server-1/start.ded -cmd "
             "server-game-deathmatch 2; server-game-skill 3; server-game-nomonsters 0; "
             "server-game-respawn 1; server-game-jump 0; server-game-mapcycle \"Time:10 06\"; "
             "server-player-limit 7; server-game-episode 1; server-game-map MAP07; "
             "after 35 startcycle; ");
  ASSERT_TRUE(runUntil([&] { return startedWith("doomsday-server") == server; }))
      << startedWith("doomsday-server") << troubles.size();
  EXPECT_EQ(startedWith("doomsday"), "");
  const HostPlace listening(SOCK_STREAM, kDoomsdayPort);
  const std::string game = placed(
      data("game-1") +
      " -isfx sdlmixer -packs @/data/kelvaron-engines/game-1/packages -pkg net.kelvaron.start "
      "-cmd sound-volume 0 -nomusic -window -nomaximize -wh 320 240 -connect 127.0.0.1:13209");
  EXPECT_TRUE(runUntil([&] { return startedWith("doomsday") == game; })) << startedWith("doomsday");
  EXPECT_TRUE(fs::exists(base / "data/kelvaron-engines/game-1/iwad/tnt.wad"));
  EXPECT_TRUE(runUntil([&] { return fs::exists(games / "loaded"); }));
}

TEST_F(Adapters, AServerThatStaysEndsWhenItsHostIsThrough) {
  install("doomsday-server", "await 15\nmark ended");
  const std::string command = "doomsv.exe -iwad @/free.wad -warp 23 -coop -jump -timer 5";
  start(command);
  ASSERT_TRUE(runUntil([&] { return fs::exists(games / "awaiting"); }));
  EXPECT_THAT(startedWith("doomsday-server"),
              HasSubstr("-game doom1-freedoom -nodiscovery -stdout -port 13209"));
  EXPECT_THAT(
      startedWith("doomsday-server"),
      HasSubstr("server-game-deathmatch 0; server-game-skill 3; server-game-nomonsters 0; "
                "server-game-respawn 0; server-game-jump 1; server-game-mapcycle \"Time:5 12\"; "
                "server-player-limit 15; server-game-episode 2; server-game-map E2M3; "));
  const auto answering = std::make_unique<HostPlace>(SOCK_STREAM, kDoomsdayPort);
  // A second start, as after a new start of the client, answers for the first.
  start(command + " -coop");
  EXPECT_FALSE(runUntil([&] { return fs::exists(games / "ended") || !troubles.empty(); }, 1s));
  port.leave(KELVARON_ENGINES "/" + placed(command) + " -coop");
  EXPECT_TRUE(runUntil([&] { return fs::exists(games / "ended"); }));
  EXPECT_THAT(troubles, IsEmpty());
}

TEST_F(Adapters, WhatEndsAGameBadlyIsTold) {
  install("doomsday");
  install("doomsday-server");
  const HostPlace listening(SOCK_STREAM, kDoomsdayPort);
  const std::string join = "doomcl.exe -iwad @/doom2.wad -connect 127.0.0.1";
  const std::string arrival = "say 001 Arrived in netgame, waiting\n";
  const std::string loss = "say [ServerLink] Connection to server was disconnected\nsleep 20000";
  struct Case {
    std::string command, plan, sentence;
  };
  const std::vector<Case> cases = {
      {join, arrival + loss, "the host has ended the game\r\n001 Arrived in netgame, waiting\r\n["},
      {join, loss, "the host's game doesn't take this one: it has another game file"},
      {join, "say last words\nkill 11",
       "Doomsday was ended by signal 11 (Segmentation fault)\r\nlast words"},
      {join, "warn no sound\nexit 3", "Doomsday ended with the error 3\r\nno sound"},
      {"doomsv.exe -iwad @/doom2.wad", "", "another server runs on this machine: port 13209"},
      {"zdoom.exe -iwad @/doom2.wad -host 5", "", "another game is hosted on this machine: port"},
  };
  for (const auto& [command, plan, sentence] : cases) {
    SCOPED_TRACE(sentence);
    make("games/doomsday.plan", plan);
    start(command);
    EXPECT_THAT(trouble(), HasSubstr(".exe: " + sentence));
  }
}

TEST_F(Adapters, AGuestPlaysWhatTheHostPlays) {
  HostPlace host(SOCK_DGRAM, kChocolatePort);
  const std::string join =
      "zdoom.exe -iwad @/doom2.wad -join 127.0.0.7 -fast\r\n -record @\\kvdemo";
  const std::string words = placed("-iwad @/doom2.wad -fast -record @/kvdemo -connect 127.0.0.7");
  start(join);
  // The host may start later.
  ASSERT_TRUE(runUntil([&] {
    host.answer("", 0);
    return host.queries == 2;
  }));
  EXPECT_EQ(startedWith("chocolate-doom"), "");
  const auto tells = [&](const std::string& version, char state) {
    ASSERT_TRUE(runUntil([&] {
      host.answer(version, state);
      return !troubles.empty() || !startedWith("chocolate-doom").empty() ||
             !startedWith("crispy-doom").empty();
    }));
  };
  tells("Chocolate Doom 3.0.0", 0);
  EXPECT_EQ(startedWith("chocolate-doom"), words);
  start(join);
  tells("Crispy Doom 5.12.0", 0);
  EXPECT_THAT(trouble(), HasSubstr("the host plays with Crispy Doom 5.12.0, and crispy-doom isn't "
                                   "installed; Debian has it in the package crispy-doom"));
  install("crispy-doom");
  start(join);
  tells("Crispy Doom 5.12.0", 0);
  EXPECT_EQ(startedWith("crispy-doom"), words);
  start(join);
  tells("Chocolate Doom 3.0.0", 2);
  EXPECT_THAT(trouble(), HasSubstr("has begun without this guest"));
  start("zdoom.exe -iwad @/doom2.wad -host 2");
  EXPECT_THAT(trouble(), HasSubstr("another game is hosted on this machine: port 2342 is taken"));
  const HostPlace doomsday(SOCK_STREAM, kDoomsdayPort);
  start("zdoom.exe -iwad @/doom2.wad -join 127.0.0.1");
  EXPECT_THAT(trouble(), HasSubstr("the host plays on Doomsday, and doomsday isn't installed"));
}

TEST_F(Adapters, RefuseTheRest) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"zdoom.exe", "no game file was named"},
      {"zdoom.exe -iwad", "-iwad wants a word"},
      {"zdoom.exe -iwad @/none.wad", "none.wad can't be read: No such file or directory"},
      {"zdoom.exe -iwad @/games", "games can't be read: Is a directory"},
      {"zdoom.exe -iwad @/text.wad", "text.wad is no game file"},
      {"zdoom.exe -iwad @/short.wad", "short.wad is no game file"},
      {"zdoom.exe -iwad @/cut.wad", "cut.wad is no game file"},
      {"zdoom.exe -iwad @/doom2.wad -file @/own.wad @/none.wad", "none.wad can't be read"},
      {"zdoom.exe -iwad @/doom2.wad -file -fast", "-file wants a word"},
      {"zdoom.exe -iwad @/doom2.wad +exec x", "\"+exec\" is a word that this engine doesn't know"},
      {"zdoom.exe -iwad @/doom2.wad -width 640", "\"-width\" is a word"},
      {"zdoom.exe -iwad @/doom2.wad -connect 10.0.0.7", "\"-connect\" is a word"},
      {"zdoom.exe -iwad @/doom2.wad -timer 5x", "-timer wants a number, not \"5x\""},
      {"zdoom.exe -iwad @/doom2.wad -warp MX", "-warp wants a number, not \"MX\""},
      {"zdoom.exe -iwad @/doom2.wad -host 5",
       "more than 4 players need Doomsday and its server, and "
       "doomsday isn't installed; Debian has it in the package doomsday"},
      {"zdoom.exe -iwad @/doom2.wad -host 16", "1 to 15 players, not 16"},
      {"zdoom.exe -iwad @/doom2.wad -host 0", "at least 1 player"},
      {"zdoom.exe -iwad @/doom2.wad -host 2 -jump", "\"-jump\" is a word"},
      {"zdoom.exe -iwad @/doom2.wad -join no.such.host", "no.such.host is no address"},
      {"zdoom.exe -iwad @/doom2.wad -host 999999999999", "-host wants a number"},
      {"zdoom.exe -iwad @/doom2.wad -host 2 -join 10.0.0.7", "hosted or joined, not both"},
      {"doomsv.exe", "needs Doomsday, and doomsday-server isn't installed"},
      {"doomsv.exe -port 1", "\"-port\" is a word"},
      {"doomcl.exe", "no server was named"},
      {"doomcl.exe -join 10.0.0.7", "\"-join\" is a word"},
  };
  for (const auto& [command, reason] : cases) {
    SCOPED_TRACE(command);
    start(command);
    const std::string program = command.substr(0, command.find(' '));
    EXPECT_THAT(trouble(), HasSubstr("ended with the error 2.\r\nThe last that it said:\r\n" +
                                     program + ": "));
    EXPECT_THAT(trouble(), HasSubstr(reason));
    EXPECT_EQ(startedWith("chocolate-doom"), "");
  }
  // The game would read switches from a file of this name.
  troubles.clear();
  port.run(KELVARON_ENGINES "/zdoom.exe -join @x", WindowStyle::maximizedFocus);
  EXPECT_THAT(trouble(), HasSubstr("it would read a list of switches"));
}

TEST_F(Adapters, ACopyUnderAnotherNameSaysHowItHasToBeCalled) {
  fs::copy_file(KELVARON_ENGINES "/zdoom.exe", base / "other.exe");
  port.run(placed("@/other.exe"), WindowStyle::maximizedFocus);
  EXPECT_THAT(trouble(), HasSubstr("it has to be called zdoom.exe, zdoomgl.exe"));
}

class GameData : public DiskTest {};

TEST_F(GameData, OfAnyOriginIsLinkedUnderTheNamesOfTheSetup) {
  const std::string command = placed("KELVARON_GAME_DATA='@/data' '") + KELVARON_LINK_GAME_DATA +
                              placed("' '@/my wads' '@/my own' >'@/said' 2>&1");
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_THAT(contents("said"), HasSubstr("apt-get install freedoom"));
  EXPECT_FALSE(fs::exists(base / "my wads"));

  for (const std::string name : {"data/freedoom1.wad", "data/freedoom2.wad", "data/plutonia.wad",
                                 "my own/Doom2.Wad", "my wads/TNT.WAD"}) {
    make(name, name);
  }
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(contents("my wads/DOOM.WAD"), "data/freedoom1.wad");
    EXPECT_EQ(contents("my wads/DOOM2.WAD"), "my own/Doom2.Wad");
    EXPECT_EQ(contents("my wads/DOOM2F.WAD"), "data/freedoom2.wad");
    EXPECT_EQ(contents("my wads/PLUTONIA.WAD"), "data/plutonia.wad");
    EXPECT_EQ(contents("my wads/TNT.WAD"), "my wads/TNT.WAD");
  }
}

}  // namespace
}  // namespace kelvaron::testing
