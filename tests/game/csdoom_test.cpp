// CSDoom: hosting with a mark in the list, and joining by it.
#include "game/csdoom.h"

#include "tests/game/player.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CsDoom : public Player {
 protected:
  void host() { desktop.raise(room().mnuLaunchCsServer.Click); }
  void join() {
    list({"ann[CS]"}, 1);
    room().List1.setListIndex(0);
    desktop.raise(room().mnuJoinGame.Click);
  }
};

TEST_F(CsDoom, HostingStartsServerAndClientAndMarks) {
  EXPECT_FALSE(room().Command2.Enabled);
  for (int i = 0; i < 2; ++i) {
    host();
    EXPECT_THAT(started(), ElementsAre("hidden /e/doomsv.exe", "/e/doomcl.exe -connect 127.0.0.1"));
    EXPECT_THAT(received(), ElementsAre("[CS]\tbob"));
    EXPECT_TRUE(room().Command2.Enabled);
    EXPECT_EQ(room().Label7.Caption.get(), "Hosting CSDOOM Server");
    EXPECT_FALSE(desktop.shows<Form4>());
  }
  EXPECT_THAT(desktop.left, IsEmpty());
  say("GETUSERIP\tann\r\n");
  EXPECT_THAT(received(), ElementsAre("OKRETURNIP\tann\t127.0.0.1"));
  click(room().Command2);
  EXPECT_THAT(received(), ElementsAre("RETURNCS\tbob"));
  EXPECT_THAT(desktop.left, ElementsAre("/e/doomsv.exe"));
  EXPECT_FALSE(room().Command2.Enabled);
  EXPECT_EQ(room().Label7.Caption.get(), "Hosting CSDOOM Server");
  EXPECT_THAT(started(), IsEmpty());
}

TEST_F(CsDoom, JoiningByTheList) {
  join();
  EXPECT_THAT(received(), ElementsAre("USERIP\tann[CS]\tbob"));
  say("OKUSERIP\t10.0.0.7\r\n");
  EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
  EXPECT_TRUE(desktop.shows<Form4>());
  EXPECT_THAT(started(), ElementsAre("/e/doomcl.exe -connect 10.0.0.7"));
}

TEST_F(CsDoom, AddressesThatAreNoneAreAskedAbout) {
  desktop.answers = {false, true};
  join();
  say("OKUSERIP\t10.0.0.7 +exec x\r\n");
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("\"10.0.0.7 +exec x\"")));
  EXPECT_FALSE(desktop.shows<Form4>());
  EXPECT_THAT(started(), IsEmpty());
  join();
  say("OKUSERIP\thost.example\r\n");
  EXPECT_THAT(started(), ElementsAre("/e/doomcl.exe -connect host.example"));
}

TEST_F(CsDoom, AddressThatNobodyAskedForStartsNothingUnlessYesIsSaid) {
  const std::string address = "OKUSERIP\t10.0.0.7\r\n";
  // Those that come while the question is open are passed over, and those of the same burst.
  desktop.whileBoxIsOpen = [&](const Box&) { server.say(address + address); };
  say(address + address);
  desktop.whileBoxIsOpen = nullptr;
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("which you have not asked for")));
  // An answer counts once, and on the connection of its question alone.
  join();
  desktop.raise(room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return desktop.client->connectionsMade == 2; }));
  say(address);
  EXPECT_THAT(started(), IsEmpty());
  desktop.answers = {true};
  say(address);
  EXPECT_EQ(boxTexts().size(), 2U);
  EXPECT_EQ(started().size(), 1U);
}

TEST_F(CsDoom, WhatIsMissingIsTold) {
  for (const GameConfig& incomplete :
       {GameConfig{.csServerPath = "s"}, GameConfig{.csClientPath = "c"}}) {
    saveGameConfig(desktop.files, incomplete);
    host();
    EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("where the CSDoom server and")));
    EXPECT_TRUE(desktop.shows<config>());
    form<config>().Visible = false;
  }
  std::filesystem::remove(desktop.folder.path() / kGameConfigFile);
  host();
  EXPECT_EQ(boxTexts().size(), 1U);
  saveGameConfig(desktop.files, kPlayersConfig);
  hangUp();
  host();
  join();
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("no connection"), HasSubstr("no connection")));
  EXPECT_THAT(started(), IsEmpty());
  EXPECT_FALSE(room().Command2.Enabled);
}

}  // namespace
}  // namespace kelvaron::testing
