// The texts from which engines are started, letter for letter.
#include "game/launch_command.h"

#include <gtest/gtest.h>

namespace kelvaron::testing {
namespace {

const GameConfig kConfig{.zdoomPath = "Z",
                         .glZdoomCommand = "G -3dfx",
                         .doomWad = "1",
                         .doom2Wad = "2",
                         .finalDoomWad = "F",
                         .plutoniaWad = "P",
                         .evilutionWad = "E",
                         .externalWadFolder = "X",
                         .externalWadFolder2 = "Y",
                         .csServerPath = "S",
                         .csClientPath = "C"};

TEST(LaunchCommand, TenGamesForHostSoloAndGuestWithAndWithoutAWad) {
  struct Case {
    std::string key;
    std::string host, hostWithWad;
    std::string solo, soloWithWad;
    std::string guest, guestWithWad;
  };
  const std::vector<Case> cases = {
      {"zdoom", "Z -IWAD 1 -fast -host 3", "Z -IWAD 1 -fast -host 3 -file X\\m.wad",
       "Z -IWAD 1 -fast ", "Z -IWAD 1 -fast -file X\\m.wad", "Z -iwad 1 -join 10.0.0.7   -fast\r\n",
       "Z -iwad 1 -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"zdoom2", "Z -IWAD 2 -fast -host 3", "Z -IWAD 2 -fast -host 3 -file X\\m.wad",
       "Z -IWAD 2 -fast ", "Z -IWAD 2 -fast -file X\\m.wad", "Z -iwad 2 -join 10.0.0.7   -fast\r\n",
       "Z -iwad 2 -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"zdoom3", "Z -IWAD F -fast -host 3", "Z -IWAD F -fast -host 3 -file X\\m.wad",
       "Z -IWAD F -fast ", "Z -IWAD F -fast -file X\\m.wad", "Z -iwad F -join 10.0.0.7   -fast\r\n",
       "Z -iwad F -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"zdoom4", "Z -IWAD P -fast -host 3", "Z -IWAD P -fast -host 3 -file X\\m.wad",
       "Z -IWAD P -fast ", "Z -IWAD P -fast -file X\\m.wad", "Z -iwad P -join 10.0.0.7   -fast\r\n",
       "Z -iwad P -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"zdoom5", "Z -IWAD E -fast -host 3", "Z -IWAD E -fast -host 3 -file X\\m.wad",
       "Z -IWAD E -fast ", "Z -IWAD E -fast -file X\\m.wad", "Z -iwad E -join 10.0.0.7   -fast\r\n",
       "Z -iwad E -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"gldoom", "G -3dfx -IWAD 1 -fast -host 3", "G -3dfx -IWAD 1 -fast -host 3 -file X\\m.wad",
       "G -3dfx -IWAD 1 -fast ", "G -3dfx -IWAD 1 -fast -file X\\m.wad",
       "G -3dfx -iwad 1 -join 10.0.0.7   -fast\r\n",
       "G -3dfx -iwad 1 -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"gldoom2", "G -3dfx -IWAD 2 -fast -host 3", "G -3dfx -IWAD 2 -fast -host 3 -file X\\m.wad",
       "G -3dfx -IWAD 2 -fast ", "G -3dfx -IWAD 2 -fast -file X\\m.wad",
       "G -3dfx -iwad 2 -join 10.0.0.7   -fast\r\n",
       "G -3dfx -iwad 2 -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"gldoom3", "G -3dfx -IWAD F -fast -host 3", "G -3dfx -IWAD F -fast -host 3 -file X\\m.wad",
       "G -3dfx -IWAD F -fast ", "G -3dfx -IWAD F -fast -file X\\m.wad",
       "G -3dfx -iwad F -join 10.0.0.7   -fast\r\n",
       "G -3dfx -iwad F -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"gldoom4", "G -3dfx -IWAD P -fast -host 3", "G -3dfx -IWAD P -fast -host 3 -file X\\m.wad",
       "G -3dfx -IWAD P -fast ", "G -3dfx -IWAD P -fast -file X\\m.wad",
       "G -3dfx -iwad P -join 10.0.0.7   -fast\r\n",
       "G -3dfx -iwad P -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
      {"gldoom5", "G -3dfx -IWAD E -fast -host 3", "G -3dfx -IWAD E -fast -host 3 -file X\\m.wad",
       "G -3dfx -IWAD E -fast ", "G -3dfx -IWAD E -fast -file X\\m.wad",
       "G -3dfx -iwad E -join 10.0.0.7   -fast\r\n",
       "G -3dfx -iwad E -join 10.0.0.7 -file X\\m.wad  -fast\r\n"},
  };
  ASSERT_EQ(cases.size(), kGames.size());
  for (const Case& each : cases) {
    const Game* game = findGame(each.key);
    ASSERT_NE(game, nullptr) << each.key;
    const std::string begun = hostBase(*game, kConfig) + " -fast";
    EXPECT_EQ(hostCommand(begun, 3, "NONE", kConfig), each.host);
    EXPECT_EQ(hostCommand(begun, 3, "m.wad", kConfig), each.hostWithWad);
    EXPECT_EQ(soloCommand(begun, "NONE", kConfig), each.solo);
    EXPECT_EQ(soloCommand(begun, "m.wad", kConfig), each.soloWithWad);
    GameOffer offer{{}, each.key, "NONE", "NONE", " -fast", "10.0.0.7", "ann"};
    EXPECT_EQ(guestCommand(offer, kConfig), each.guest);
    offer.wad = "m.wad";
    EXPECT_EQ(guestCommand(offer, kConfig), each.guestWithWad);
  }
}

TEST(LaunchCommand, OptionsOfHostAndGuests) {
  struct Case {
    GameOptions options;
    std::string host, guests;
  };
  const std::vector<Case> cases = {
      {{}, "", ""},
      {{.extratic = true}, " -extratic", " -extratic "},
      {{.extratic = true, .noMonsters = true}, " -extratic -nomonsters", " -extratic  -nomonsters"},
      {{.noMusic = true}, " -nomusic", " -nomusic"},
      {{.noSfx = true}, " -nosfx", " -nosfx"},
      {{.respawn = true}, " -respawn", " -respawn"},
      {{.altDeath = true}, " -altdeath", " -altdeath"},
      {{.deathmatch = true, .coop = true}, " -deathmatch -coop", " -deathmatch -coop"},
      {{.timer = "20"}, " -timer 20", " -timer 20"},
      {{.turbo = "any text"}, " -turbo any text", " -turbo any text"},
      {{.warp = "MAP07"}, " -warp 07", " -warp 07"},
      {{.warp = "9"}, " -warp 9", " -warp 9"},
      {{.record = true}, " -record /opt/kelvaron\\kvdemo", ""},
      {{.extratic = true,
        .noMonsters = true,
        .noMusic = true,
        .noSfx = true,
        .respawn = true,
        .altDeath = true,
        .deathmatch = true,
        .coop = true,
        .fast = true,
        .timer = "5",
        .dup = "1",
        .turbo = "10",
        .skill = "4",
        .warp = "32",
        .record = true},
       " -extratic -nomonsters -nomusic -nosfx -respawn -altdeath -deathmatch -coop -fast -timer 5 "
       "-dup 1 -turbo 10 -skill 4 -warp 32 -record /opt/kelvaron\\kvdemo",
       " -extratic  -nomonsters -nomusic -nosfx -respawn -altdeath -deathmatch -coop -fast -timer "
       "5 -dup 1 -turbo 10 -skill 4 -warp 32"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(hostOptions(each.options, "/opt/kelvaron"), each.host);
    EXPECT_EQ(guestOptions(each.options), each.guests);
  }
}

TEST(LaunchCommand, GuestsOfUnusualOffers) {
  struct Case {
    GameOffer offer;
    std::string command;
  };
  const std::vector<Case> cases = {
      {{{}, "quake", "NONE", "NONE", "", "1.2.3.4", "ann"}, " -join 1.2.3.4  \r\n"},
      {{{}, "ZDOOM", "none", "NONE", "", "1.2.3.4", "ann"}, " -join 1.2.3.4 -file X\\none \r\n"},
      {{{}, "zdoom", "NONE", "s.wad", "", "1.2.3.4", "ann"},
       "Z -iwad 1 -join 1.2.3.4 -file Y\\s.wad \r\n"},
      {{{}, "zdoom", "a.wad", "s.wad", " -fast", "1.2.3.4", "ann"},
       "Z -iwad 1 -join 1.2.3.4 -file Y\\s.wad  -fast\r\n"},
  };
  for (const Case& each : cases) EXPECT_EQ(guestCommand(each.offer, kConfig), each.command);
  EXPECT_EQ(guestCommand({{}, "zdoom", "a.wad", "NONE", "", "1.2.3.4", "ann"}, {}),
            " -iwad  -join 1.2.3.4 -file \\a.wad \r\n");
}

}  // namespace
}  // namespace kelvaron::testing
