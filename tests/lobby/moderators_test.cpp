// A moderator, a user and the companion server: asking for the rights and using them, by the menus
// and the dialogs.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "moderation/kick_form.h"
#include "moderation/status_request.h"
#include "server/password.h"
#include "tests/server/peer.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {
namespace {

using server::RunningServer;
using server::Store;
using server::TemporaryFolder;
using ::testing::HasSubstr;

// ann is registered as a moderator, bob and cy are not.
class Moderators : public ::testing::Test {
 protected:
  void SetUp() override {
    const Store store(folder.path());
    store.prepare();
    store.setModerator({"ann", "ann@example.org", server::hashPassword("secret")});
    running = std::make_unique<RunningServer>(folder.path());
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
  static void requestStatus(TestDesktop& player, const std::string& password) {
    player.raise(player.room().mnuGetOP.Click);
    auto& form = player.client->form<frmGetOP>();
    form.txtEMail.Text = "ann@example.org";
    form.txtPassword.Text = password;
    player.raise(form.cmdOK.Click);
  }
  static void choose(TestDesktop& player, const MenuItem& entry, std::deque<std::string> typed) {
    player.inputs = std::move(typed);
    player.raise(entry.Click);
  }
  void grant() {
    requestStatus(*ann, "secret");
    ASSERT_TRUE(reads(*ann, kGranted));
  }

  static constexpr const char* kGranted = "Moderator Privlidges Granted - You are now a moderator.";
  static constexpr const char* kRefused = "Refused. Your request was logged.";
  static constexpr const char* kNoRight = "Only moderators can do that.";

  PollLoop loop;
  TemporaryFolder folder;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<TestDesktop> ann, bob, cy;
};

TEST_F(Moderators, OnlyTheRightProofGrants) {
  requestStatus(*ann, "wrong");
  EXPECT_TRUE(reads(*ann, kRefused));
  EXPECT_EQ(ann->room().Label1.Caption.get(), "ann");
  requestStatus(*bob, "secret");
  EXPECT_TRUE(reads(*bob, kRefused));
  grant();
  EXPECT_EQ(ann->room().Label1.Caption.get(),
            "\xA5"
            "ann");
  // The mark is of the shown name alone.
  ann->enter("hello");
  EXPECT_TRUE(reads(*bob, "ann: hello\n"));
}

TEST_F(Moderators, OthersAreRefusedByEveryEntry) {
  const frmMain& room = bob->room();
  int refusals = 0;
  for (const MenuItem* entry :
       {&room.mnuKick, &room.mnuBan, &room.mnuGetIP, &room.mnuSendServerMSG}) {
    choose(*bob, *entry, {"cy", "no reason"});
    ++refusals;
    const auto told = [&] {
      int count = 0;
      const std::string chat = bob->chat();
      for (std::size_t at = 0; (at = chat.find(kNoRight, at)) != std::string::npos; ++at) ++count;
      return count == refusals;
    };
    EXPECT_TRUE(bob->until(told)) << entry->Name;
  }
  EXPECT_TRUE(cy->boxes.empty());
}

TEST_F(Moderators, KickEndsTheOthersProgramAndLetsThemComeBack) {
  grant();
  choose(*ann, ann->room().mnuKick, {"BOB", "spam and more"});
  ASSERT_TRUE(bob->until([&] { return bob->ended(); }));
  ASSERT_FALSE(bob->boxes.empty());
  EXPECT_EQ(bob->boxes.back().title, "Kicked!");
  EXPECT_THAT(bob->boxes.back().text, HasSubstr("by ann\r\n\r\nReason: spam and more"));
  bob.reset();
  EXPECT_TRUE(listed({"ann", "cy"}));
  bob = enter("bob");
  EXPECT_TRUE(listed({"ann", "bob", "cy"}));
}

TEST_F(Moderators, BanHoldsAfterARestartOfTheServer) {
  grant();
  choose(*ann, ann->room().mnuBan, {"bob", "spam"});
  ASSERT_TRUE(bob->until([&] { return !bob->boxes.empty(); }));
  EXPECT_EQ(bob->boxes.back().title, "Banned from Kelvaron!");
  EXPECT_THAT(bob->boxes.back().text, HasSubstr("by ann!\r\n\r\nReason: spam"));
  EXPECT_TRUE(bob->shows<frmMain>());
  EXPECT_NE(bob->client->sckClient().State(), SocketState::connected);
  ASSERT_TRUE(listed({"ann", "cy"}));

  for (const char* when : {"before", "after"}) {
    SCOPED_TRACE(std::string(when) + " the restart");
    const auto again = enter("Bob");
    ASSERT_TRUE(again->until([&] { return !again->boxes.empty(); }));
    EXPECT_EQ(again->boxes.back().title, "You have been banned!");
    EXPECT_NE(again->client->sckClient().State(), SocketState::connected);
    running.reset();
    running = std::make_unique<RunningServer>(folder.path());
  }
}

TEST_F(Moderators, AddressOfAUser) {
  grant();
  choose(*ann, ann->room().mnuGetIP, {"bob"});
  EXPECT_TRUE(reads(*ann, "bob tells the address 127.0.0.1; the server sees 127.0.0.1"));
  choose(*ann, ann->room().mnuGetIP, {"nobody"});
  EXPECT_TRUE(reads(*ann, "nobody is not on Kelvaron."));
}

TEST_F(Moderators, MessageToAll) {
  grant();
  choose(*ann, ann->room().mnuSendServerMSG, {kGranted});
  for (TestDesktop* player : {ann.get(), bob.get(), cy.get()}) {
    EXPECT_TRUE(reads(*player, std::string("Message from ann: ") + kGranted));
  }
  EXPECT_EQ(bob->room().Label1.Caption.get(), "bob") << "words grant nothing";
}

TEST_F(Moderators, KickWithProof) {
  // Registered, but not yet granted: the server asks for the proof.
  const auto kick = [&](const std::string& password) {
    choose(*ann, ann->room().mnuKick, {"bob", "spam"});
    EXPECT_TRUE(ann->until([&] { return ann->shows<frmkick>(); }));
    auto& form = ann->client->form<frmkick>();
    EXPECT_EQ(form.Combo1.items(), ann->room().List1.entries());
    form.Combo1.Text = "bob";
    form.Text1.Text = password;
    form.Text2.Text = "ann@example.org";
    ann->raise(form.Command1.Click);
  };
  kick("wrong");
  EXPECT_TRUE(reads(*ann, kRefused));
  EXPECT_FALSE(bob->ended());
  kick("secret");
  ASSERT_TRUE(bob->until([&] { return bob->ended(); }));
  bob.reset();
  EXPECT_TRUE(listed({"ann", "cy"}));

  // The form opens for nobody else, and its line proves nothing for them.
  auto& form = cy->client->form<frmkick>();
  form.Combo1.Text = "ann";
  form.Text1.Text = "secret";
  form.Text2.Text = "ann@example.org";
  cy->raise(form.Command1.Click);
  EXPECT_TRUE(reads(*cy, kRefused));
  EXPECT_FALSE(ann->ended());
}

}  // namespace
}  // namespace kelvaron::testing
