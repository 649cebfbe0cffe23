// CSDoom: hosting with a mark in the list, and joining by it.
#include "game/csdoom.h"

#include "tests/game/player.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CsDoom : public Player {
 protected:
  void host() { desktop.raise(room().mnuLaunchCsServer.Click); }
  void join(const std::string& whom = "ann") {
    list({whom + "[CS]"}, 1);
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
  // A No counts for the address; another one that comes meanwhile is another question.
  desktop.whileBoxIsOpen = [&](const Box&) {
    server.say(address + "OKUSERIP\t10.0.0.8\r\n");
    desktop.whileBoxIsOpen = nullptr;
  };
  say(address + address);
  say("");
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("10.0.0.7\", which you have not asked for"),
                                      HasSubstr("10.0.0.8")));
  // An answer counts on the connection of its question alone.
  wait(61s);
  join();
  desktop.raise(room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return desktop.client->connectionsMade == 2; }));
  say(address);
  EXPECT_THAT(started(), IsEmpty());
  desktop.answers = {true};
  wait(122s);
  say(address);
  EXPECT_EQ(boxTexts().size(), 2U);
  EXPECT_EQ(started().size(), 1U);
}

// What is asked, an answer a line: what a box says before the game starts, or "" for none.
TEST_F(CsDoom, AnAnswerCountsOnceAndIsAskedAboutWhereItIsNotPlain) {
  struct Case {
    std::vector<std::string> asked;
    std::chrono::seconds later;
    std::vector<std::string> addresses;
    std::vector<std::string> boxes;
    std::size_t games;
  };
  const Case cases[] = {
      {{"ann"}, 9s, {"10.0.0.7", "10.0.0.7"}, {"have not asked for"}, 1},
      {{"ann"}, 25s, {"10.0.0.7"}, {"25 s after you asked \"ann\": \"10.0.0.7\""}, 0},
      {{"ann"}, 61s, {"10.0.0.7"}, {"have not asked for"}, 0},
      {{"ann", "ann"}, 1s, {"10.0.0.7", "10.0.0.7"}, {}, 1},
      {{"ann", "ann"}, 1s, {"10.0.0.7", "10.0.0.8"}, {"8\", behind \"10.0.0.7"}, 1},
      {{"ann", "cy"}, 1s, {"10.0.0.8", "10.0.0.7"}, {"\"ann\" or \"cy\"", "\"cy\""}, 0},
  };
  for (const Case& each : cases) {
    for (const std::string& whom : each.asked) join(whom);
    wait(each.later);
    for (const std::string& address : each.addresses) say("OKUSERIP\t" + address + "\r\n");
    const std::vector<std::string> boxes = boxTexts();
    ASSERT_EQ(boxes.size(), each.boxes.size()) << each.addresses.back();
    for (std::size_t i = 0; i < boxes.size(); ++i) EXPECT_THAT(boxes[i], HasSubstr(each.boxes[i]));
    EXPECT_EQ(started().size(), each.games);
    wait(2min);
  }
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
  join();
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("CSDoom server and"), HasSubstr("CSDoom client")));
  EXPECT_THAT(sent(), IsEmpty());
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
