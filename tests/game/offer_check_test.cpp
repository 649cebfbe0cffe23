// What a guest is asked about before a game starts.
#include "game/offer_check.h"

#include <gmock/gmock.h>

namespace kelvaron::testing {
namespace {

const GameConfig kConfigured{.zdoomPath = "Z", .doomWad = "1"};
// The wads that the guest has.
bool isOnDisk(const std::string& path) {
  constexpr std::array<std::string_view, 6> kWads = {"maps.wad", "My Maps 2.wad",  "caf\xE9.wad",
                                                     "..wad",    "Scythe - 2.wad", "-x.wad"};
  return std::ranges::any_of(
      kWads, [&](std::string_view wad) { return path == externalWadPath(wad, kConfigured); });
}

const GameOffer kUsual{{}, "zdoom", "NONE", "NONE", "", "10.0.0.7", "ann"};

TEST(OfferCheck, UsualOffersCauseNoQuestion) {
  const GameOptions everything{true, true, true, true,  true, true,    true, true,
                               true, "90", "9",  "250", "5",  "MAP07", true};
  for (const std::string& options : {std::string(), guestOptions(everything)}) {
    for (const char* wad :
         {"NONE", "maps.wad", "My Maps 2.wad", "caf\xE9.wad", "..wad", "Scythe - 2.wad"}) {
      GameOffer offer = kUsual;
      offer.guestOptions = options;
      offer.wad = wad;
      EXPECT_EQ(unusualAbout(offer, kConfigured, isOnDisk), "") << wad << options;
    }
  }
}

TEST(OfferCheck, NamesWhatNoKelvaronSends) {
  const std::vector<std::tuple<std::string GameOffer::*, std::string, std::string>> cases = {
      {&GameOffer::guestOptions, " -fast +exec evil.cfg", "never sends: +exec evil.cfg"},
      {&GameOffer::guestOptions, " -file x.wad", "-file x.wad"},
      {&GameOffer::guestOptions, " -skill 3 4", "never sends: 4"},
      {&GameOffer::guestOptions, " -skill -config", "never sends: -config"},
      {&GameOffer::guestOptions, " -timer $(reboot)", "$(reboot)"},
      {&GameOffer::guestOptions, " -turbo `reboot`;", "`reboot`;"},
      {&GameOffer::guestOptions, " \"-fast\"", "\"-fast\""},
      {&GameOffer::guestOptions, " @response", "@response"},
      {&GameOffer::guestOptions, " -fast\n+exec", "-fast\n+exec"},
      {&GameOffer::wad, "", "plain file name"},
      {&GameOffer::wad, "-x.wad", "\"-x.wad\" is not a plain file name"},
      {&GameOffer::wad, "Scythe - 3.wad", "not in your folder of external wads"},
      {&GameOffer::wad, "other.wad", "\"other.wad\" is not in your folder of external wads"},
      {&GameOffer::wad, "../x", "\"../x\""},
      {&GameOffer::wad, "..\\x", "\"..\\x\""},
      {&GameOffer::wad, "..", "plain file name"},
      {&GameOffer::wad, "C:x.wad", "\"C:x.wad\""},
      {&GameOffer::wad, "a @x.wad", "not in your folder"},
      {&GameOffer::wad, "a.wad +exec x", "not in your folder"},
      {&GameOffer::wad, std::string("a\0b", 3), "plain file name"},
      {&GameOffer::skin, "s.wad", "skin"},
      {&GameOffer::hostAddress, "", "not an address"},
      {&GameOffer::hostAddress, "10.0.0.7 +exec x", "not an address"},
      {&GameOffer::gameKey, "quake", "\"quake\""},
      {&GameOffer::gameKey, "zdoom2", "where the wad"},
      {&GameOffer::gameKey, "gldoom", "where the engine"}};
  for (const auto& [field, value, named] : cases) {
    GameOffer offer = kUsual;
    offer.*field = value;
    EXPECT_THAT(unusualAbout(offer, kConfigured, isOnDisk), ::testing::HasSubstr(named)) << value;
  }
}

TEST(OfferCheck, Addresses) {
  for (const char* good : {"0.0.0.0", "255.255.255.255", "192.168.0.19", "::1", "fe80::1:2"}) {
    EXPECT_TRUE(isAddress(good)) << good;
  }
  for (const char* bad : {"", "1.2.3", "1.2.3.4.5", "1.2.3.256", "1..2.3", "1.2.3.4 ", "1.2.3.0004",
                          "host", "a:b", "::1 -x", "1.2.3.4\n"}) {
    EXPECT_FALSE(isAddress(bad)) << bad;
  }
}

}  // namespace
}  // namespace kelvaron::testing
