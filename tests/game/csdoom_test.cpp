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
  void join() { desktop.raise(room().mnuJoinGame.Click); }
};

TEST_F(CsDoom, HostingStartsServerAndClientAndMarks) {
  const std::vector<TestDesktop::Started> both = {
      {"/e/doomsv.exe", WindowStyle::minimizedNoFocus},
      {"/e/doomcl.exe -connect 127.0.0.1", WindowStyle::maximizedFocus}};
  EXPECT_FALSE(room().Command2.Enabled);
  host();
  EXPECT_EQ(desktop.started, both);
  EXPECT_THAT(received(), ElementsAre("[CS]\tbob"));
  EXPECT_TRUE(room().Command2.Enabled);
  EXPECT_EQ(room().Label7.Caption.get(), "Hosting CSDOOM Server");
  EXPECT_FALSE(desktop.shows<Form4>());
  host();
  EXPECT_EQ(desktop.started.size(), 4U);
  EXPECT_THAT(received(), ElementsAre("[CS]\tbob"));
  EXPECT_TRUE(room().Command2.Enabled);

  click(room().Command2);
  EXPECT_THAT(received(), ElementsAre("RETURNCS\tbob"));
  EXPECT_FALSE(room().Command2.Enabled);
  EXPECT_EQ(room().Label7.Caption.get(), "Hosting CSDOOM Server");
  EXPECT_EQ(desktop.started.size(), 4U);
}

TEST_F(CsDoom, HostAnswersForItsAddress) {
  say("GETUSERIP\tann\r\n");
  EXPECT_THAT(received(), ElementsAre("OKRETURNIP\tann\t127.0.0.1"));
}

TEST_F(CsDoom, JoiningByTheList) {
  room().List1.AddItem("ann[CS]");
  selectOnly(room().List1, 0);
  join();
  EXPECT_THAT(received(), ElementsAre("USERIP\tann[CS]\tbob"));
  say("OKUSERIP\t10.0.0.7\r\n");
  EXPECT_THAT(received(), ElementsAre("INGAME\tbob"));
  EXPECT_TRUE(desktop.shows<Form4>());
  EXPECT_EQ(desktop.started, (std::vector<TestDesktop::Started>{{"/e/doomcl.exe -connect 10.0.0.7",
                                                                 WindowStyle::maximizedFocus}}));
  click(form<Form4>().Command1);
  EXPECT_THAT(received(), ElementsAre("RETURN\tbob"));
}

TEST_F(CsDoom, AddressesThatAreNoneAreAskedAbout) {
  room().List1.AddItem("ann[CS]");
  selectOnly(room().List1, 0);
  desktop.answers = {false, true};
  join();
  say("OKUSERIP\t10.0.0.7 +exec x\r\n");
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("\"10.0.0.7 +exec x\"")));
  EXPECT_FALSE(desktop.shows<Form4>());
  EXPECT_THAT(desktop.started, IsEmpty());
  join();
  say("OKUSERIP\thost.example\r\n");
  ASSERT_EQ(desktop.started.size(), 1U);
  EXPECT_EQ(desktop.started[0].command, "/e/doomcl.exe -connect host.example");
}

TEST_F(CsDoom, AddressThatNobodyAskedForStartsNothingUnlessYesIsSaid) {
  const std::string address = "OKUSERIP\t10.0.0.7\r\n";
  // Those that come while the question is open are passed over, and those of the same burst.
  desktop.whileBoxIsOpen = [&](const Box&) { server.say(address + address); };
  say(address + address);
  desktop.whileBoxIsOpen = nullptr;
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("which you have not asked for")));
  // An answer counts once, and on the connection of its question alone.
  room().List1.AddItem("ann[CS]");
  selectOnly(room().List1, 0);
  join();
  desktop.raise(room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return desktop.client->connectionsMade == 2; }));
  say(address);
  EXPECT_THAT(desktop.started, IsEmpty());
  desktop.answers = {true};
  say(address);
  EXPECT_EQ(boxTexts().size(), 2U);
  EXPECT_EQ(desktop.started.size(), 1U);
}

TEST_F(CsDoom, WhatIsMissingIsTold) {
  for (const GameConfig& incomplete :
       {GameConfig{.csServerPath = "s"}, GameConfig{.csClientPath = "c"}, GameConfig{}}) {
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
  EXPECT_THAT(desktop.started, IsEmpty());
  EXPECT_FALSE(room().Command2.Enabled);
}

}  // namespace
}  // namespace kelvaron::testing
