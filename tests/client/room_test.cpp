// The room's user list, pop-up menu, private messages and menus.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chat/private_message.h"
#include "session/sending.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

// A window that only remembers which menu was opened on it.
struct PopUps : FormWindow {
  void activate() override {}
  void popUp(MenuItem& menu) override { opened.push_back(menu.Name); }
  std::vector<std::string> opened;
};

class Room : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    for (const char* entry : {"ann", "cy[IG]", "dee[CS]", "eve[AW]"}) list().AddItem(entry);
    desktop.room().window = &window;
  }
  void TearDown() override {
    if (auto* room = desktop.client->loadedForm<frmMain>()) room->window = nullptr;
  }
  ListBox& list() { return desktop.room().List1; }
  SendPM& form() { return desktop.client->form<SendPM>(); }
  void doubleClick(int index) {
    selectOnly(list(), index);
    desktop.raise(list().DblClick);
  }
  PopUps window;
};

TEST_F(Room, RightClickOpensTheMenuForTheSelectedEntry) {
  struct Case {
    int index;
    bool join;
  };
  for (const Case each : {Case{0, false}, Case{2, true}, Case{3, false}, Case{-1, false}}) {
    selectOnly(list(), each.index);
    desktop.raise(list().MouseUp, MouseButton::right);
    EXPECT_EQ(desktop.room().mnuJoinGame.Enabled.get(), each.join) << each.index;
  }
  desktop.raise(list().MouseUp, MouseButton::left);
  EXPECT_THAT(window.opened, ElementsAre("mnuUser", "mnuUser", "mnuUser", "mnuUser"));
}

TEST_F(Room, PrivateMessageRoad) {
  doubleClick(3);
  ASSERT_TRUE(desktop.shows<SendPM>());
  EXPECT_EQ(form().Label2.Caption.get(), "eve[AW]");
  EXPECT_EQ(form().Caption.get(), "Private Message to : eve[AW]");
  form().Text1.Text = "are you\tthere?";
  desktop.raise(form().Command1.Click);
  ASSERT_TRUE(desktop.until([&] { return !server.lines.empty(); }));
  EXPECT_THAT(server.lines, ElementsAre("PM\teve[AW]\tare you\tthere?\tbob"));
  EXPECT_EQ(desktop.chat(), "Private Message To eve[AW]: are you\tthere?\n");
  const StyledText& view = desktop.room().txtOutput.Content;
  EXPECT_EQ(view.run(0, 0).style.color, (Color{255, 0, 18}));
  EXPECT_EQ(view.run(0, 1).style.color, (Color{185, 190, 215}));
  EXPECT_EQ(view.style().color, (Color{190, 190, 0}));
  EXPECT_EQ(desktop.client->loadedForm<SendPM>(), nullptr);
}

TEST_F(Room, PrivateMessageFormStates) {
  const auto state = [&] {
    const SendPM* loaded = desktop.client->loadedForm<SendPM>();
    if (loaded == nullptr) return std::string("none");
    return std::string(loaded->Visible ? "shown " : "hidden ") + loaded->Label2.Caption.get() +
           " | " + loaded->Caption.get();
  };
  EXPECT_EQ(state(), "none");
  selectOnly(list(), 0);
  desktop.raise(desktop.room().mnuPM.Click);
  EXPECT_EQ(state(), "shown ann | Private Message to : ann");
  form().Text1.Text = "never mind";
  desktop.raise(form().Command2.Click);
  EXPECT_EQ(state(), "hidden ann | Private Message to : ann");
  EXPECT_EQ(form().Text1.Text.get(), "");
  selectOnly(list(), 3);
  desktop.raise(desktop.room().mnuPM.Click);
  EXPECT_EQ(state(), "shown ann | Private Message to : ann") << "the menu keeps the old target";
  desktop.raise(form().Command2.Click);
  doubleClick(3);
  EXPECT_EQ(state(), "shown eve[AW] | Private Message to : ann");
  doubleClick(0);
  EXPECT_EQ(state(), "shown ann | Private Message to : ann");
}

TEST_F(Room, UsersInAGameAreLeftInPeace) {
  doubleClick(1);
  desktop.raise(desktop.room().mnuPM.Click);
  ASSERT_EQ(desktop.boxes.size(), 2U);
  for (const auto& box : desktop.boxes) {
    EXPECT_EQ(box.text,
              "You can not send a private message to a user that is currently in a game. Try again "
              "later");
  }
  EXPECT_EQ(desktop.client->loadedForm<SendPM>(), nullptr);
}

TEST_F(Room, NobodySelectedGivesAnEmptyTarget) {
  selectOnly(list(), -1);
  desktop.raise(list().DblClick);
  desktop.raise(form().Command1.Click);
  ASSERT_TRUE(desktop.until([&] { return !server.lines.empty(); }));
  EXPECT_EQ(server.lines[0], "PM\t\t\tbob");
}

TEST_F(Room, PrivateMessageWithoutAConnectionIsKept) {
  doubleClick(0);
  form().Text1.Text = "hi";
  desktop.raise(desktop.room().mnuDisconnect.Click);
  desktop.raise(form().Command1.Click);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].text, kNothingSent);
  EXPECT_TRUE(desktop.shows<SendPM>());
  EXPECT_EQ(form().Text1.Text.get(), "hi");
  EXPECT_EQ(desktop.chat(), "");
}

TEST_F(Room, SelectionOutlastsARebuildOfTheList) {
  selectOnly(list(), 1);
  list().setSelected(0, true);
  list().setSelected(1, true);
  server.say("Userscl\r\nUsers\tAaron\r\nUsers\tann[AW]\r\nUsers\tcy\r\nUsers\tdee\r\n");
  ASSERT_TRUE(desktop.until([&] { return list().ListCount() == 4 && list().List(0) == "Aaron"; }));
  EXPECT_EQ(list().Text(), "cy");
  std::vector<std::string> selected;
  for (int i = 0; i < list().ListCount(); ++i) {
    if (list().Selected(i)) selected.push_back(list().List(i));
  }
  EXPECT_THAT(selected, ElementsAre("ann[AW]", "cy"));
  // Who leaves and comes back much later is no longer selected.
  server.say("Userscl\r\nUsers\tdee\r\n");
  ASSERT_TRUE(desktop.until([&] { return list().ListCount() == 1; }));
  server.say("Userscl\r\nUsers\tcy\r\n");
  ASSERT_TRUE(desktop.until([&] { return list().ListCount() == 1 && list().List(0) == "cy"; }));
  EXPECT_FALSE(list().Selected(0));
}

TEST_F(Room, MenuBarAsDesigned) {
  // One line per entry: depth, name, caption, "h" hidden, "g" greyed.
  std::vector<std::string> lines;
  const std::function<void(const std::vector<MenuItem*>&, const std::string&)> list =
      [&](const std::vector<MenuItem*>& items, const std::string& depth) {
        for (const MenuItem* item : items) {
          lines.push_back(depth + item->Name + " " + item->Caption.get() +
                          (item->Visible ? "" : " h") + (item->Enabled ? "" : " g"));
          list(item->items(), depth + ". ");
        }
      };
  list(desktop.room().Menus(), "");
  EXPECT_THAT(
      lines,
      ElementsAre(
          "tools Tools", ". mnuConnect Connect", ". mnuDisconnect Disconnect",
          ". fserv File Server", ". sepbar2 -", ". mnuExpandConfig Config",
          ". . mnuConfig Configure Games", ". . mnuEditProfile Edit Profile", ". sepbar5 -",
          ". mnuQuit Quit", "mnuUser User h", ". mnuPing Ping User", ". mnuGetProfile Get Profile",
          ". mnuPM Private Message", ". mnuSendFile Send File", ". mnuJoinGame Join CSDOOM Game",
          "cn Connection h", ". dconnect Disconnect", ". cnect Connect", "games Games",
          ". mnuLaunchCsServer Launch CSDOOM Server", "musictoplay Radio", ". stopplay Stop",
          ". stationsenu Stations", ". . kkrzplay Z100 (Top 40 / Dance)",
          ". . KSHE95 KSHE 95 (Rock)", ". . kwjjplay KWJJ (Country)", ". volume2 Volume",
          "mnuHelp Help", ". mnuAbout About Kelvaron", ". sepbar3 - h", ". mnuInternet Internet h",
          ". . mnuCheckUpdates Check for updates g", ". . mnuVisitHomepage Visit Kelvaron homepage",
          ". sepbar4 -", ". mnuGetOP Request Operator Status", ". mnuOpCommands Operator Commands",
          ". . mnuKick Kick User", ". . mnuBan Ban User h", ". . mnuGetIP Get users IP",
          ". . mnuSendServerMSG Send Server message h"));
}

TEST_F(Room, LogoOpensTheHomePage) {
  desktop.raise(desktop.room().Image1.Click);
  EXPECT_THAT(desktop.pages, ElementsAre("http://localhost/kelvaron/"));
}

TEST_F(Room, FaultThatNoRuleMeetsIsTold) {
  desktop.client->serverAddress = "";
  desktop.raise(desktop.room().mnuConnect.Click);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].style, box_style::kCritical);
  EXPECT_FALSE(desktop.boxes[0].text.empty());
  EXPECT_FALSE(desktop.ended());
}

}  // namespace
}  // namespace kelvaron::testing
