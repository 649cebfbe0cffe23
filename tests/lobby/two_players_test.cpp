// Two players and the companion server: the first things that they do with one another.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chat/mute_list.h"
#include "chat/private_message.h"
#include "server/password.h"
#include "session/message_of_the_day.h"
#include "session/outbound.h"
#include "tests/server/peer.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {
namespace {

using server::RunningServer;
using server::Store;
using server::TemporaryFolder;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class TwoPlayers : public ::testing::Test {
 protected:
  void SetUp() override {
    const Store store(folder.path());
    store.prepare();
    store.setModerator({"ann", "ann@example.org", server::hashPassword("secret")});
    running = std::make_unique<RunningServer>(folder.path());
    ann = std::make_unique<TestDesktop>(loop, running->port());
    bob = std::make_unique<TestDesktop>(loop, running->port());
    ASSERT_TRUE(ann->logIn("ann"));
    ASSERT_TRUE(bob->logIn("bob"));
    ASSERT_TRUE(lists({"ann", "bob"}));
  }
  bool lists(const std::vector<std::string>& users) {
    return ann->until([&] {
      return ann->room().List1.entries() == users && bob->room().List1.entries() == users;
    });
  }
  static bool reads(TestDesktop& player, const std::string& text) {
    return player.until([&] { return player.chat().find(text) != std::string::npos; });
  }
  static void select(TestDesktop& player, const std::string& entry) {
    const auto& entries = player.room().List1.entries();
    const auto found = std::ranges::find(entries, entry);
    ASSERT_NE(found, entries.end()) << entry;
    selectOnly(player.room().List1, static_cast<int>(found - entries.begin()));
  }
  static bool connected(TestDesktop& player) {
    return player.client->sckClient().State() == SocketState::connected;
  }

  PollLoop loop;
  TemporaryFolder folder;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<TestDesktop> ann;
  std::unique_ptr<TestDesktop> bob;
};

TEST_F(TwoPlayers, SeeEachOtherAndTalkBothWays) {
  EXPECT_TRUE(reads(*ann, "bob has entered"));
  ann->enter(
      "hello b\xF6"
      "b");
  bob->enter("hello ann");
  for (TestDesktop* player : {ann.get(), bob.get()}) {
    EXPECT_TRUE(reads(*player,
                      "ann: hello b\xF6"
                      "b\n"));
    EXPECT_TRUE(reads(*player, "bob: hello ann\n"));
  }
  bob->enter("/me waves");
  EXPECT_TRUE(reads(*ann, "bob waves\n"));
  EXPECT_TRUE(reads(*bob, "bob waves\n"));
  ann->enter("/sound yeah");
  EXPECT_TRUE(bob->until([&] { return std::ranges::count(bob->sounds, "yeah") == 1; }));
}

TEST_F(TwoPlayers, MessageOfTheDayIsShownAtLogin) {
  EXPECT_TRUE(ann->until([&] { return ann->shows<Form5>(); }));
  EXPECT_FALSE(ann->client->form<Form5>().Text1.Text.get().empty());
}

TEST_F(TwoPlayers, PrivateMessageReachesOneUser) {
  TestDesktop cy(loop, running->port());
  ASSERT_TRUE(cy.logIn("cy"));
  ASSERT_TRUE(lists({"ann", "bob", "cy"}));
  select(*ann, "bob");
  ann->raise(ann->room().List1.DblClick);
  ann->client->form<SendPM>().Text1.Text = "just you";
  ann->raise(ann->client->form<SendPM>().Command1.Click);
  EXPECT_TRUE(reads(*bob, "Private Message From ann: just you\n"));
  EXPECT_TRUE(reads(*ann, "Private Message To bob: just you\n"));
  ann->enter("to all");
  ASSERT_TRUE(reads(cy, "to all"));
  EXPECT_THAT(cy.chat(), Not(HasSubstr("just you")));
}

TEST_F(TwoPlayers, MutedUserIsNotHeardInTheRoomButInPrivate) {
  ann->enter("/mute bob");
  ann->edge.run([&] { ann->room().txtinput.Text = ""; });
  bob->enter("can you hear me");
  ASSERT_TRUE(reads(*bob, "can you hear me"));
  bob->client->send(outbound::privateMessage("ann", "and now", "bob"));
  ASSERT_TRUE(reads(*ann, "Private Message From bob: and now"));
  EXPECT_THAT(ann->chat(), Not(HasSubstr("can you hear me")));
  ann->enter("/unmute bob");
  bob->enter("and again");
  EXPECT_TRUE(reads(*ann, "bob: and again"));
}

TEST_F(TwoPlayers, AwayAndReturnShowInBothLists) {
  bob->enter("/away");
  EXPECT_TRUE(lists({"ann", "bob[AW]"}));
  EXPECT_EQ(bob->room().Label7.Caption.get(), "AWAY");
  bob->enter("/me is back");
  EXPECT_TRUE(lists({"ann", "bob"}));
  EXPECT_TRUE(reads(*ann, "bob: /me is back\n"));
}

TEST_F(TwoPlayers, KickNeedsTheRightAndEndsTheOthersProgram) {
  ann->enter("/kick bob spam");
  bob->enter("still here");
  ASSERT_TRUE(reads(*ann, "still here"));
  EXPECT_FALSE(bob->ended());

  ann->client->send(outbound::requestOp("ann", "ann@example.org", "secret"));
  ASSERT_TRUE(reads(*ann, "Moderator Privlidges Granted - You are now a moderator."));
  EXPECT_EQ(ann->room().Label1.Caption.get(),
            "\xA5"
            "ann");
  ann->enter("/kick bob spam and more");
  ASSERT_TRUE(bob->until([&] { return bob->ended(); }));
  ASSERT_FALSE(bob->boxes.empty());
  EXPECT_EQ(bob->boxes.back().title, "Kicked!");
  EXPECT_THAT(bob->boxes.back().text, HasSubstr("by ann\r\n\r\nReason: spam and more"));
  bob.reset();
  EXPECT_TRUE(ann->until([&] { return ann->room().List1.entries().size() == 1; }));
}

TEST_F(TwoPlayers, RefusedNicknames) {
  struct Case {
    const char* name;
    const char* text;
    bool loginAgain;
  };
  for (const Case each : {Case{"BOB", "Another users has chosen that name", true},
                          Case{"qzn", "To avoid confusion", false}}) {
    TestDesktop other(loop, running->port());
    ASSERT_TRUE(other.logIn(each.name));
    ASSERT_TRUE(other.until([&] { return !other.boxes.empty(); })) << each.name;
    EXPECT_THAT(other.boxes[0].text, HasSubstr(each.text));
    EXPECT_FALSE(connected(other));
    EXPECT_EQ(other.shows<frmLogin>(), each.loginAgain);
    EXPECT_TRUE(other.shows<frmMain>());
    if (!each.loginAgain) continue;
    other.edge.run([&] { other.login().txtUserName.Text = "bobby"; });
    other.raise(other.login().cmdOK.Click);
    EXPECT_TRUE(lists({"ann", "bob", "bobby"}));
  }
}

TEST_F(TwoPlayers, LostServerIsToldAndConnectTakesUpAgain) {
  bob->enter("before");
  ASSERT_TRUE(reads(*ann, "bob: before"));
  const std::uint16_t port = running->port();
  running.reset();
  for (TestDesktop* player : {ann.get(), bob.get()}) {
    ASSERT_TRUE(reads(*player, "* Connection to the server has been lost!\n"));
    EXPECT_THAT(player->room().List1.entries(), ElementsAre("ann", "bob"));
  }
  bob->enter("nobody hears");
  EXPECT_EQ(bob->room().txtinput.Text.get(), "nobody hears");

  running = std::make_unique<RunningServer>(folder.path());
  ASSERT_NE(running->port(), 0);
  for (TestDesktop* player : {ann.get(), bob.get()}) {
    player->sockets.routeTo(running->port());
    player->raise(player->room().mnuConnect.Click);
  }
  ASSERT_TRUE(ann->until([&] { return connected(*ann) && connected(*bob); })) << port;
  EXPECT_TRUE(lists({"ann", "bob"}));
  bob->raise(bob->room().txtinput.KeyDown, key_code::kEnter, 0);
  EXPECT_TRUE(reads(*ann, "bob: nobody hears\n"));
}

TEST_F(TwoPlayers, ClosingTheWindowSaysFarewell) {
  bob->edge.run([&] { bob->client->slots.unload(bob->room()); });
  EXPECT_TRUE(bob->ended());
  bob.reset();
  EXPECT_TRUE(reads(*ann, "bob has become bored with life and left Kelvaron!\n"));
  EXPECT_TRUE(ann->until([&] { return ann->room().List1.entries().size() == 1; }));
}

}  // namespace
}  // namespace kelvaron::testing
