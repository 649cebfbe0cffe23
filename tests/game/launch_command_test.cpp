// The texts from which engines are started, letter for letter.
#include "game/launch_command.h"

#include <gtest/gtest.h>

#include <map>

namespace kelvaron::testing {
namespace {

// A letter for each record, in the order of the file.
const GameConfig kConfig{"Z", "G -3dfx", "1", "2", "F", "P", "E", "X", "Y", "S", "C"};

TEST(LaunchCommand, TenGamesForHostSoloAndGuestWithAndWithoutAWad) {
  const std::map<std::string, const char*> engines = {{"zdoom", "Z"}, {"gldoom", "G -3dfx"}};
  const std::map<std::string, const char*> wads = {
      {"", "1"}, {"2", "2"}, {"3", "F"}, {"4", "P"}, {"5", "E"}};
  ASSERT_EQ(engines.size() * wads.size(), kGames.size());
  for (const auto& [key, engine] : engines) {
    for (const auto& [number, wad] : wads) {
      const Game* game = findGame(key + number);
      ASSERT_NE(game, nullptr) << key << number;
      const std::string begun = hostBase(*game, kConfig) + " -fast";
      const std::string host = std::string(engine) + " -IWAD " + wad + " -fast ";
      EXPECT_EQ(hostCommand(begun, 3, "NONE", kConfig), host + "-host 3");
      EXPECT_EQ(hostCommand(begun, 3, "m.wad", kConfig), host + "-host 3 -file X\\m.wad");
      EXPECT_EQ(soloCommand(begun, "NONE", kConfig), host);
      EXPECT_EQ(soloCommand(begun, "m.wad", kConfig), host + "-file X\\m.wad");
      GameOffer offer{{}, key + number, "NONE", "NONE", " -fast", "10.0.0.7", "ann"};
      const std::string guest = std::string(engine) + " -iwad " + wad + " -join 10.0.0.7 ";
      EXPECT_EQ(guestCommand(offer, kConfig), guest + "  -fast\r\n");
      offer.wad = "m.wad";
      EXPECT_EQ(guestCommand(offer, kConfig), guest + "-file X\\m.wad  -fast\r\n");
    }
  }
}

TEST(LaunchCommand, OptionsOfHostAndGuests) {
  const std::vector<std::tuple<GameOptions, std::string, std::string>> cases = {
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
      {{true, true, true, true, true, true, true, true, true, "5", "1", "10", "4", "32", true},
       " -extratic -nomonsters -nomusic -nosfx -respawn -altdeath -deathmatch -coop -fast -timer 5 "
       "-dup 1 -turbo 10 -skill 4 -warp 32 -record /opt/kelvaron\\kvdemo",
       " -extratic  -nomonsters -nomusic -nosfx -respawn -altdeath -deathmatch -coop -fast -timer "
       "5 -dup 1 -turbo 10 -skill 4 -warp 32"}};
  for (const auto& [options, host, guests] : cases) {
    EXPECT_EQ(hostOptions(options, "/opt/kelvaron"), host);
    EXPECT_EQ(guestOptions(options), guests);
  }
}

TEST(LaunchCommand, GuestsOfUnusualOffers) {
  const std::vector<std::pair<GameOffer, std::string>> cases = {
      {{{}, "quake", "NONE", "NONE", "", "1.2.3.4", "ann"}, " -join 1.2.3.4  \r\n"},
      {{{}, "ZDOOM", "none", "NONE", "", "1.2.3.4", "ann"}, " -join 1.2.3.4 -file X\\none \r\n"},
      {{{}, "zdoom", "NONE", "s.wad", "", "1.2.3.4", "ann"},
       "Z -iwad 1 -join 1.2.3.4 -file Y\\s.wad \r\n"},
      {{{}, "zdoom", "a.wad", "s.wad", " -fast", "1.2.3.4", "ann"},
       "Z -iwad 1 -join 1.2.3.4 -file Y\\s.wad  -fast\r\n"}};
  for (const auto& [offer, command] : cases) EXPECT_EQ(guestCommand(offer, kConfig), command);
  EXPECT_EQ(guestCommand({{}, "zdoom", "a.wad", "NONE", "", "1.2.3.4", "ann"}, {}),
            " -iwad  -join 1.2.3.4 -file \\a.wad \r\n");
}

}  // namespace
}  // namespace kelvaron::testing
