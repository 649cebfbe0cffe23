// Whole clients and the companion server: that both sides mean the same by their lines. What each
// side does with a line of its own is tested beside it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chat/private_message.h"
#include "moderation/kick_form.h"
#include "moderation/status_request.h"
#include "tests/lobby/lobby_server.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// ann is registered as a moderator, bob and cy are not.
class Lobby : public ::testing::Test {
 protected:
  void SetUp() override {
    running = std::make_unique<LobbyServer>();
    ann = enter("ann");
    bob = enter("bob");
    cy = enter("cy");
    ASSERT_TRUE(listed({"ann", "bob", "cy"}));
  }
  std::unique_ptr<TestDesktop> enter(const std::string& name) {
    auto player = std::make_unique<TestDesktop>(loop, running->port());
    EXPECT_TRUE(player->logIn(name));
    return player;
  }
  bool listed(const std::vector<std::string>& users) {
    return ann->until([&] { return ann->room().List1.entries() == users; });
  }
  static bool reads(TestDesktop& player, const std::string& text) {
    return player.until([&] { return player.chat().find(text) != std::string::npos; });
  }
  static bool reads(TestDesktop& player, const char* who, const char* text) {
    return reads(player, std::string(who) + text + "\n");
  }
  static void prove(TestDesktop& player) {
    player.raise(player.room().mnuGetOP.Click);
    auto& form = player.client->form<frmGetOP>();
    form.txtEMail.Text = "ann@example.org";
    form.txtPassword.Text = "secret";
    player.raise(form.cmdOK.Click);
  }
  static void choose(TestDesktop& player, const MenuItem& entry, std::deque<std::string> typed) {
    player.inputs = std::move(typed);
    player.raise(entry.Click);
  }

  PollLoop loop;
  std::unique_ptr<LobbyServer> running;
  std::unique_ptr<TestDesktop> ann, bob, cy;
};

TEST_F(Lobby, TalkPrivateMessagesAndTags) {
  ann->enter("hello b\xF6");
  bob->enter("/me waves");
  ann->enter("/sound yeah");
  for (TestDesktop* player : {ann.get(), bob.get(), cy.get()}) {
    EXPECT_TRUE(reads(*player, "ann: ", "hello b\xF6"));
    EXPECT_TRUE(reads(*player, "bob", " waves"));
    EXPECT_TRUE(player->until([&] { return std::ranges::count(player->sounds, "yeah") == 1; }));
  }
  selectOnly(ann->room().List1, 1);
  ann->raise(ann->room().List1.DblClick);
  ann->client->form<SendPM>().Text1.Text = "just you";
  ann->raise(ann->client->form<SendPM>().Command1.Click);
  EXPECT_TRUE(reads(*bob, "Private Message From ann: ", "just you"));
  EXPECT_TRUE(reads(*ann, "Private Message To bob: ", "just you"));
  bob->enter("/away");
  EXPECT_TRUE(listed({"ann", "bob[AW]", "cy"}));
  bob->enter("back");
  EXPECT_TRUE(listed({"ann", "bob", "cy"}));
  EXPECT_THAT(cy->chat(), Not(HasSubstr("just you")));
  bob->edge.run([&] { bob->client->slots.unload(bob->room()); });
  bob.reset();
  EXPECT_TRUE(reads(*ann, "bob", " has become bored with life and left Kelvaron!"));
}

TEST_F(Lobby, LostServerIsToldAndConnectTakesUpAgain) {
  running.reset();
  for (TestDesktop* player : {ann.get(), bob.get()}) {
    ASSERT_TRUE(reads(*player, "* Connection to the server", " has been lost!"));
  }
  bob->enter("kept");
  EXPECT_EQ(bob->room().txtinput.Text.get(), "kept");
  running = std::make_unique<LobbyServer>();
  for (TestDesktop* player : {ann.get(), bob.get()}) {
    player->sockets.routeTo(running->port());
    player->raise(player->room().mnuConnect.Click);
  }
  EXPECT_TRUE(listed({"ann", "bob"}));
  bob->raise(bob->room().txtinput.KeyDown, key_code::kEnter, 0);
  EXPECT_TRUE(reads(*ann, "bob: ", "kept"));
}

TEST_F(Lobby, ModeratorsRights) {
  prove(*bob);
  EXPECT_TRUE(reads(*bob, "Refused. Your request was logged."));
  choose(*bob, bob->room().mnuKick, {"cy", "no reason"});
  EXPECT_TRUE(reads(*bob, "Only moderators can do that."));
  prove(*ann);
  ASSERT_TRUE(reads(*ann, "Moderator Privlidges Granted - You are now a moderator."));
  EXPECT_EQ(ann->room().Label1.Caption.get(), std::string("\xA5") + "ann");
  choose(*ann, ann->room().mnuGetIP, {"bob"});
  EXPECT_TRUE(reads(*ann, "bob tells the address 127.0.0.1; the server sees 127.0.0.1"));
  choose(*ann, ann->room().mnuSendServerMSG, {"hear"});
  EXPECT_TRUE(reads(*cy, "Message from ann: ", "hear"));
  choose(*ann, ann->room().mnuKick, {"CY", "spam and more"});
  ASSERT_TRUE(cy->until([&] { return cy->ended(); }));
  EXPECT_THAT(cy->boxes.back().text, HasSubstr("by ann\r\n\r\nReason: spam and more"));
  choose(*ann, ann->room().mnuBan, {"bob", "spam"});
  EXPECT_TRUE(bob->until([&] { return bob->boxes.back().title == "Banned from Kelvaron!"; }));
  const auto again = enter("Bob");
  ASSERT_TRUE(again->until([&] { return !again->boxes.empty(); }));
  EXPECT_EQ(again->boxes.back().title, "You have been banned!");
}

TEST_F(Lobby, KickWithProof) {
  // Registered, but not yet granted: the server asks for the proof.
  choose(*ann, ann->room().mnuKick, {"bob", "spam"});
  EXPECT_TRUE(ann->until([&] { return ann->shows<frmkick>(); }));
  auto& form = ann->client->form<frmkick>();
  form.Combo1.Text = "bob";
  form.Text1.Text = "secret";
  form.Text2.Text = "ann@example.org";
  ann->raise(form.Command1.Click);
  EXPECT_TRUE(bob->until([&] { return bob->ended(); }));
}

}  // namespace
}  // namespace kelvaron::testing
