// From a fresh machine to a first game.
#include <gmock/gmock.h>

#include <fstream>
#include <set>

#include "game/configuration.h"
#include "game/game_selection.h"
#include "game/installed_games.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

TEST(InstalledGames, WhatIsThere) {
  const GamePlaces places{.engines = "/a", .programs = {"/b", "/c"}, .gameData = {"/w", "/x"}};
  const std::set<std::string> adapters = {"/a/zdoom.exe", "/a/zdoomgl.exe", "/a/doomsv.exe",
                                          "/a/doomcl.exe"};
  // What else is there, how a sentence calls it, and the file of records.
  const std::tuple<std::set<std::string>, std::string, std::string> cases[] = {
      {{"/c/chocolate-doom", "/w/freedoom1.wad", "/w/freedoom2.wad"},
       "Chocolate Doom and Freedoom",
       "/a/zdoom.exe|/a/zdoomgl.exe|/w/freedoom1.wad|/w/freedoom2.wad||||||||"},
      {{"/b/crispy-doom", "/b/doomsday", "/b/doomsday-server", "/w/freedoom1.wad", "/x/doom.wad",
        "/x/tnt.wad"},
       "Crispy Doom, Doomsday, Doom and Evilution",
       "/a/zdoom.exe|/a/zdoomgl.exe|/x/doom.wad||||/x/tnt.wad|||/a/doomsv.exe|/a/doomcl.exe|"},
      {{"/b/doomsday", "/x/doom2.wad"},
       "Doomsday and Doom II",
       "/a/zdoom.exe|/a/zdoomgl.exe||/x/doom2.wad||||||||"},
      {{"/b/chocolate-doom"}, "", ""},
      {{"/w/freedoom1.wad"}, "", ""},
      {{"/b/doomsday-server", "/w/freedoom1.wad"}, "", ""},
  };
  for (const auto& [others, names, records] : cases) {
    std::set<std::string> there = adapters;
    there.insert(others.begin(), others.end());
    const auto exists = [&](const std::string& path) { return there.contains(path); };
    const auto found = findInstalled(places, exists);
    EXPECT_EQ(found ? found->names : "", names);
    std::string seen;
    for (const auto record : kGameConfigOrder) {
      if (found) seen += found->config.*record + '|';
    }
    EXPECT_EQ(seen, records);
    const auto withoutAdapters = [&theirs = others](const std::string& path) {
      return theirs.contains(path);
    };
    EXPECT_FALSE(findInstalled(places, withoutAdapters));
  }
}

class FirstGame : public ClientTest {
 protected:
  void install() {
    const std::string here = desktop.folder.path().string();
    for (const char* file : {"/zdoom.exe", "/chocolate-doom", "/freedoom2.wad"}) {
      std::ofstream(here + file) << 'x';
    }
    desktop.client->lasting<GamePlaces>() = {
        .engines = here, .programs = {here}, .gameData = {here}};
  }
  std::string hint() { return room().txtOutput.Hint_.get().text; }
};

TEST_F(FirstGame, OnePressTakesWhatIsInstalled) {
  install();
  EXPECT_THAT(hint(), HasSubstr("Before your first game"));
  desktop.answers = {true};
  click(room().Command1);
  EXPECT_THAT(boxTexts(), ElementsAre("Chocolate Doom and Freedoom are installed. Use them?"));
  EXPECT_TRUE(desktop.shows<game1>());
  EXPECT_TRUE(form<game1>().Check26.Enabled);
  EXPECT_FALSE(desktop.shows<config>());
  EXPECT_THAT(hint(), HasSubstr("are set up"));
  room().hints.passed();
  EXPECT_EQ(hint(), "");
}

TEST_F(FirstGame, WhoSaysNoIsNotAskedAgainAndConfiguresByHand) {
  install();
  desktop.answers = {false, true};
  desktop.raise(room().txtOutput.HintFollowed);
  EXPECT_TRUE(desktop.shows<config>());
  EXPECT_EQ(form<config>().Text1.Text.get(), "");
  click(form<config>().Command10);
  desktop.raise(room().mnuConfig.Click);
  EXPECT_EQ(boxTexts().size(), 1U);
  EXPECT_TRUE(desktop.shows<config>());
}

TEST_F(FirstGame, WhatIsConfiguredIsNotOfferedAndTheHintGoesWithSave) {
  install();
  saveGameConfig(desktop.files, {.csClientPath = "/e/doomcl.exe"});
  desktop.raise(room().mnuConfig.Click);
  EXPECT_THAT(boxTexts(), IsEmpty());
  form<config>().Text1.Text = "/e/zdoom.exe";
  click(form<config>().Command9);
  EXPECT_THAT(hint(), HasSubstr("Before your first game")) << "there are no data yet";
  form<config>().Text4.Text = "/w/doom2.wad";
  click(form<config>().Command9);
  EXPECT_EQ(hint(), "");
}

}  // namespace
}  // namespace kelvaron::testing
