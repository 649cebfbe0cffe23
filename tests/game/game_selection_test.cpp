// Choosing a game: what can be ticked, the level list, the external wad, and Send Request.
#include "session/sending.h"
#include "tests/game/player.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Selection : public Player {
 protected:
  std::string enabledGames() {
    std::string keys;
    for (std::size_t i = 0; i < kGames.size(); ++i) {
      if ((form<game1>().*game1::kGameBoxes[i]).Enabled) {
        keys.append(keys.empty() ? "" : " ").append(kGames[i].key);
      }
    }
    return keys;
  }
  void open(int players) {
    list({"al", "bo", "cy", "di", "ed", "fy", "gil"}, players);
    click(room().Command1);
  }
};

TEST_F(Selection, RecordsDecideWhatCanBeTicked) {
  const std::vector<std::pair<GameConfig, std::string>> cases = {
      {kPlayersConfig, "zdoom zdoom2 zdoom3 zdoom4 zdoom5 gldoom gldoom2 gldoom3 gldoom4 gldoom5"},
      {{.doomWad = "w", .doom2Wad = "w"}, ""},
      {{.zdoomPath = "z"}, ""},
      {{.zdoomPath = "z", .doom2Wad = "w"}, "zdoom2"},
      {{.glZdoomCommand = "g", .plutoniaWad = "w", .evilutionWad = "w"}, "gldoom4 gldoom5"},
      {{.zdoomPath = "z", .glZdoomCommand = "g", .doomWad = "w", .finalDoomWad = "w"},
       "zdoom zdoom3 gldoom gldoom3"}};
  for (const auto& [config, enabled] : cases) {
    saveGameConfig(desktop.files, config);
    EXPECT_EQ(enabledGames(), enabled);
    desktop.edge.run([&] { desktop.client->slots.unload(form<game1>()); });
  }
  EXPECT_THAT(boxTexts(), IsEmpty());
}

TEST_F(Selection, ListsAndOneGameAtMost) {
  game1& game = form<game1>();
  EXPECT_THAT(game.Combo1.items(), ElementsAre("5", "10", "15", "20", "30", "45", "60", "90"));
  EXPECT_THAT(game.Combo2.items(), ElementsAre("1", "2", "3", "4", "5", "6", "7", "8", "9"));
  EXPECT_THAT(game.Combo3.items(), ElementsAre("10", "20", "30", "40", "50", "60", "70", "80", "90",
                                               "100", "150", "200", "250"));
  EXPECT_THAT(game.Combo5.items(), ElementsAre("1", "2", "3", "4", "5"));
  EXPECT_THAT(game.Combo4.items(), IsEmpty());
  tick(game.Check26);
  EXPECT_EQ(game.Combo4.items().size(), 32U);
  EXPECT_EQ(game.Combo4.items().front(), "01");
  EXPECT_EQ(game.Combo4.items().back(), "32");
  game.Combo4.Text = "07";
  tick(game.Check27);
  EXPECT_EQ(game.Check26.Value.get(), 0);
  EXPECT_EQ(game.Combo4.Text.get(), "");
  EXPECT_EQ(game.Combo4.items().size(), 32U);
  // Another game leaves the field alone.
  game.Combo4.Text = "E1M3";
  tick(game.Check30);
  EXPECT_EQ(game.Check27.Value.get(), 0);
  EXPECT_EQ(game.Combo4.Text.get(), "E1M3");
  tick(game.Check30);
  for (CheckBox game1::*box : game1::kGameBoxes) EXPECT_EQ((game.*box).Value.get(), 0);
}

TEST_F(Selection, RequestWithGuests) {
  const std::string options = " -nomonsters -respawn -altdeath -deathmatch -skill 3 -warp 07";
  const std::vector<std::tuple<int, const char*, const char*>> cases = {
      {0, "1", "GAME\t0\t\t"},
      {2, "3", "GAME\t2\tal\tbo\t"},
      {6, "7", "GAME\t6\tal\tbo\tcy\tdi\ted\tfy\t"}};
  for (const auto& [players, host, line] : cases) {
    open(players);
    game1& game = form<game1>();
    EXPECT_TRUE(game.Visible);
    tick(game.Check26);
    for (CheckBox* box : {&game.Check1, &game.Check4, &game.Check5, &game.Check6}) tick(*box);
    game.Combo5.Text = "3";
    game.Combo4.Text = "07";
    game.Text1.Text = "x.wad";
    click(game.Command3);
    EXPECT_EQ(room().Text2.Text.get(), "/e/zdoom.exe -IWAD /w/doom2.wad" + options + " -host " +
                                           host + " -file /w/extra\\x.wad");
    EXPECT_THAT(received(), ElementsAre(std::string(line) + "zdoom2\tx.wad\tNONE\t" + options +
                                        "\t127.0.0.1\tbob"));
    EXPECT_FALSE(desktop.shows<game1>());
    EXPECT_TRUE(desktop.shows<Form1>());
  }
  EXPECT_THAT(started(), IsEmpty());
  EXPECT_THAT(boxTexts(), IsEmpty());
}

TEST_F(Selection, RefusedRequestsLoseNothing) {
  open(1);
  game1& game = form<game1>();
  tick(game.Check36);
  tick(game.Check35);
  click(game.Command3);
  click(game.Command3);
  const std::string record =
      "You have selected to record a demo. Your demo will be placed in the Kelvaron Directory";
  const std::string choose = "You must first choose a game to play before sending a request";
  EXPECT_THAT(boxTexts(), ElementsAre(record, choose, record, choose));
  EXPECT_TRUE(game.Visible);
  // The options begin anew with each press.
  EXPECT_EQ(game.Text7.Text.get(), " -extratic ");
  EXPECT_THAT(take(), IsEmpty());

  tick(game.Check25);
  hangUp();
  click(game.Command3);
  EXPECT_THAT(boxTexts(), ElementsAre(record, kNothingSent));
  EXPECT_TRUE(game.Visible);
  EXPECT_FALSE(desktop.shows<Form1>());
}

TEST_F(Selection, SoloGameWithAnExternalWadGoesOnAtOnceAndAlsoOffline) {
  open(2);
  game1& game = form<game1>();
  tick(game.Check30);
  tick(game.Check37);
  click(game.Command1);
  ASSERT_EQ(desktop.fileDialogs.size(), 1U);
  EXPECT_EQ(desktop.fileDialogs[0].title, "Choose Your Wad");
  EXPECT_EQ(desktop.fileDialogs[0].filter, "*.wad");
  EXPECT_EQ(desktop.fileDialogs[0].initialFolder, "/w/extra\\");
  EXPECT_EQ(desktop.fileDialogs[0].defaultExtension, "wad");
  EXPECT_EQ(game.Text1.Text.get(), "NONE") << "the dialog was dismissed";
  desktop.chosenFiles = {"/w/extra/My Maps.wad"};
  click(game.Command1);
  click(game.Command3);
  EXPECT_THAT(started(),
              ElementsAre("/e/zdoomgl.exe -3dfx -IWAD /w/doom.wad -file /w/extra\\My Maps.wad"));
  EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
  EXPECT_TRUE(game.Visible);
  EXPECT_TRUE(desktop.shows<Form4>());

  hangUp();
  click(form<Form4>().Command1);
  EXPECT_FALSE(desktop.shows<Form4>());
  click(game.Command3);
  EXPECT_EQ(started().size(), 1U);
  EXPECT_THAT(boxTexts(), IsEmpty());
}

TEST_F(Selection, PressesThatOpenNoGameForm) {
  open(7);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("up to six players, but 7 are selected")));
  EXPECT_FALSE(desktop.shows<game1>());
  EXPECT_EQ(form<Form1>().Label1[0].Caption.get(), "None");

  std::filesystem::remove(desktop.folder.path() / kGameConfigFile);
  open(1);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("tell Kelvaron where your game engine")));
  EXPECT_FALSE(desktop.shows<game1>());
  EXPECT_TRUE(desktop.shows<config>());

  hangUp();
  open(1);
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("no connection")));
  EXPECT_FALSE(desktop.shows<game1>());
}

TEST_F(Selection, ShortConfigurationIsToldOnce) {
  std::ofstream(desktop.folder.path() / kGameConfigFile, std::ios::binary)
      << "/e/z\r\n\r\n/w/doom.wad\r\n";
  open(1);
  EXPECT_EQ(enabledGames(), "zdoom");
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("only 3 of its 11 lines")));
}

TEST_F(Selection, LaterRequestKeepsTheChoicesOfALoadedForm) {
  open(2);
  tick(form<game1>().Check25);
  list({"al", "bo"}, 1);
  click(room().Command1);
  EXPECT_EQ(form<game1>().Check25.Value.get(), 1);
  EXPECT_EQ(form<game1>().Text8.Text.get(), "1");
  // The second slot stays as it was.
  EXPECT_EQ(form<Form1>().Label1[1].Caption.get(), "bo");
  // Whom the user list's commands are about stays who it was.
  EXPECT_EQ(room().List1.Text(), "al");
  click(form<game1>().Command4);
  EXPECT_EQ(desktop.client->loadedForm<game1>(), nullptr);
}

}  // namespace
}  // namespace kelvaron::testing
