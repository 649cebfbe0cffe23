// The adapters, started as Kelvaron starts them, with a stand-in for the game.
#include <gmock/gmock.h>
#include <stdlib.h>

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

class Adapters : public DiskTest {
 protected:
  void SetUp() override {
    fs::create_directory(games);
    for (const char* name : {"chocolate-doom", "chocolate-server"}) {
      fs::create_symlink(KELVARON_RECORDING_ENGINE, games / name);
    }
    ::setenv("PATH", (games.string() + ':' + usualPath).c_str(), 1);
    make("doom 1.wad", gameFile("IWAD", {"PLAYPAL", "E1M1", "E2M3"}));
    make("doom2.wad", gameFile("IWAD", {"PLAYPAL", "MAP01"}));
    make("own.wad", gameFile("PWAD", {"LONGNAME", "MAP07"}));
    make("text.wad", "a text that is no game");
    make("short.wad", "IWAD");
    make("cut.wad", std::string("IWAD\x09\0\0\0\x0C\0\0\0end", 15));
    port.onTrouble = [this](const std::string& text) { troubles.push_back(text); };
  }
  void TearDown() override { ::setenv("PATH", usualPath.c_str(), 1); }

  void start(const std::string& command) {
    fs::remove(games / "chocolate-doom.started");
    fs::remove(games / "chocolate-server.started");
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
  bool runUntil(const std::function<bool()>& done) { return loop.runUntil(done, 20s); }

  fs::path games = base / "games";
  std::string usualPath = ::getenv("PATH");
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
      {"zdoom.exe -iwad @/doom2.wad -join 10.0.0.7 -fast\r\n -record @\\kvdemo",
       "-iwad @/doom2.wad -fast -record @/kvdemo -connect 10.0.0.7"},
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
      {"DOOMCL.EXE -connect 10.0.0.7", "-connect 10.0.0.7"},
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
  start("doomsv.exe");
  EXPECT_TRUE(runUntil([&] { return startedWith("chocolate-server") == "-privateserver -nogui"; }));
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
      {"zdoom.exe -iwad @/doom2.wad -host 5", "1 to 4 players, not 5"},
      {"zdoom.exe -iwad @/doom2.wad -host 0", "1 to 4 players, not 0"},
      {"zdoom.exe -iwad @/doom2.wad -host 999999999999", "-host wants a number"},
      {"zdoom.exe -iwad @/doom2.wad -host 2 -join 10.0.0.7", "hosted or joined, not both"},
      {"doomsv.exe -port 1", "takes no words, but got \"-port\""},
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
    EXPECT_EQ(startedWith("chocolate-doom") + startedWith("chocolate-server"), "");
  }
  // The game would read switches from a file of this name.
  troubles.clear();
  port.run(KELVARON_ENGINES "/zdoom.exe -join @x", WindowStyle::maximizedFocus);
  EXPECT_THAT(trouble(), HasSubstr("it would read a list of switches"));
}

TEST_F(Adapters, AGuestWaitsForTheHost) {
  std::ofstream(games / "chocolate-doom.plan") << "exit 1";
  start("zdoom.exe -iwad @/doom2.wad -join 10.0.0.7");
  const std::string asked = "-nogui -query 10.0.0.7";
  for (int query = 0; query < 2; ++query) {
    ASSERT_TRUE(runUntil([&] { return startedWith("chocolate-doom") == asked; }));
    fs::remove(games / "chocolate-doom.started");
  }
  fs::remove(games / "chocolate-doom.plan");
  EXPECT_TRUE(runUntil([&] {
    return startedWith("chocolate-doom") == placed("-iwad @/doom2.wad -connect 10.0.0.7");
  }));
}

TEST_F(Adapters, ACopyUnderAnotherNameSaysHowItHasToBeCalled) {
  fs::copy_file(KELVARON_ENGINES "/zdoom.exe", base / "other.exe");
  port.run(placed("@/other.exe"), WindowStyle::maximizedFocus);
  EXPECT_THAT(trouble(), HasSubstr("it has to be called zdoom.exe, zdoomgl.exe"));
}

class GameData : public DiskTest {};

TEST_F(GameData, IsLinkedUnderTheNamesOfTheSetup) {
  const std::string command = placed("KELVARON_GAME_DATA='@/data' '") + KELVARON_LINK_GAME_DATA +
                              placed("' '@/my wads' >'@/said' 2>&1");
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_THAT(contents("said"), HasSubstr("apt-get install freedoom"));
  EXPECT_FALSE(fs::exists(base / "my wads"));

  for (const std::string name : {"freedoom1.wad", "freedoom2.wad"}) make("data/" + name, name);
  make("my wads/TNT.WAD", "bought");
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(std::system(command.c_str()), 0);
    EXPECT_EQ(contents("my wads/DOOM.WAD"), "freedoom1.wad");
    for (const std::string name : {"DOOM2.WAD", "DOOM2F.WAD", "PLUTONIA.WAD"}) {
      EXPECT_EQ(contents("my wads/" + name), "freedoom2.wad");
    }
    EXPECT_EQ(contents("my wads/TNT.WAD"), "bought");
  }
}

}  // namespace
}  // namespace kelvaron::testing
