// The room's user list, pop-up menu, private messages and menus.
#include <gmock/gmock.h>

#include "chat/colors.h"
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
    room().window = &window;
  }
  void TearDown() override {
    if (auto* room = desktop.client->loadedForm<frmMain>()) room->window = nullptr;
  }
  ListBox& list() { return room().List1; }
  SendPM& message() { return form<SendPM>(); }
  void doubleClick(int index) {
    selectOnly(list(), index);
    desktop.raise(list().DblClick);
  }
  PopUps window;
};

TEST_F(Room, ClicksOnTheLogoAndTheList) {
  desktop.raise(room().Image1.Click);
  EXPECT_THAT(desktop.pages, ElementsAre("http://localhost/kelvaron/"));
  for (const auto& [index, join] : {std::pair{0, false}, {2, true}, {3, false}, {-1, false}}) {
    selectOnly(list(), index);
    desktop.raise(list().MouseUp, MouseButton::right);
    EXPECT_EQ(room().mnuJoinGame.Enabled.get(), join) << index;
  }
  desktop.raise(list().MouseUp, MouseButton::left);
  EXPECT_THAT(window.opened, ElementsAre("mnuUser", "mnuUser", "mnuUser", "mnuUser"));
}

TEST_F(Room, PrivateMessageRoad) {
  doubleClick(3);
  ASSERT_TRUE(desktop.shows<SendPM>());
  message().Text1.Text = "are you\tthere?";
  click(message().Command1);
  EXPECT_THAT(received(), ElementsAre("PM\teve[AW]\tare you\tthere?\tbob"));
  EXPECT_EQ(desktop.chat(), "Private Message To eve[AW]: are you\tthere?\n");
  const StyledText& view = room().txtOutput.Content;
  EXPECT_EQ(view.run(0, 0).style.color, (Color{255, 0, 18}));
  EXPECT_EQ(view.run(0, 1).style.color, (Color{185, 190, 215}));
  EXPECT_EQ(view.style().color, (Color{190, 190, 0}));
  EXPECT_EQ(desktop.client->loadedForm<SendPM>(), nullptr);
  // Nobody selected gives an empty target.
  doubleClick(-1);
  click(message().Command1);
  EXPECT_THAT(received(), ElementsAre("PM\t\t\tbob"));
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
  desktop.raise(room().mnuPM.Click);
  EXPECT_EQ(state(), "shown ann | Private Message to : ann");
  message().Text1.Text = "never mind";
  click(message().Command2);
  EXPECT_EQ(state(), "hidden ann | Private Message to : ann");
  EXPECT_EQ(message().Text1.Text.get(), "");
  selectOnly(list(), 3);
  desktop.raise(room().mnuPM.Click);
  EXPECT_EQ(state(), "shown ann | Private Message to : ann") << "the menu keeps the old target";
  click(message().Command2);
  doubleClick(3);
  EXPECT_EQ(state(), "shown eve[AW] | Private Message to : ann");
  doubleClick(0);
  EXPECT_EQ(state(), "shown ann | Private Message to : ann");
}

TEST_F(Room, UsersInAGameAreLeftInPeace) {
  doubleClick(1);
  desktop.raise(room().mnuPM.Click);
  const std::string refused =
      "You can not send a private message to a user that is currently in a game. Try again later";
  EXPECT_THAT(boxTexts(), ElementsAre(refused, refused));
  EXPECT_EQ(desktop.client->loadedForm<SendPM>(), nullptr);
}

TEST_F(Room, PrivateMessageWithoutAConnectionIsKept) {
  doubleClick(0);
  message().Text1.Text = "hi";
  desktop.raise(room().mnuDisconnect.Click);
  click(message().Command1);
  EXPECT_THAT(boxTexts(), ElementsAre(kNothingSent));
  EXPECT_TRUE(desktop.shows<SendPM>());
  EXPECT_EQ(message().Text1.Text.get(), "hi");
  EXPECT_EQ(desktop.chat(), "");
}

TEST_F(Room, SelectionOutlastsARebuildOfTheList) {
  selectOnly(list(), 1);
  list().setSelected(0, true);
  list().setSelected(1, true);
  arrive("Userscl\r\nUsers\tAaron\r\nUsers\tann[AW]\r\nUsers\tcy\r\nUsers\tdee\r\n");
  EXPECT_EQ(list().Text(), "cy");
  std::vector<std::string> selected;
  for (int i = 0; i < list().ListCount(); ++i) {
    if (list().Selected(i)) selected.push_back(list().List(i));
  }
  EXPECT_THAT(selected, ElementsAre("ann[AW]", "cy"));
  // Who leaves and comes back much later is no longer selected.
  arrive("Userscl\r\nUsers\tdee\r\n");
  arrive("Userscl\r\nUsers\tcy\r\n");
  EXPECT_FALSE(list().Selected(0));
}

TEST_F(Room, ShowsWhetherThereIsAConnection) {
  const auto shown = [&] {
    return room().txtinput.Placeholder.get() +
           (list().ForeColor.get() == colors::kUsers ? "" : " dim");
  };
  EXPECT_EQ(shown(), "Message, /? for commands");
  room().txtinput.Text = "half a sen";
  hangUp();
  EXPECT_EQ(shown(), "Not connected dim");
  EXPECT_EQ(room().txtinput.Text.get(), "half a sen");
  EXPECT_EQ(room().Label7.Caption.get(), "Ready To Play");
  desktop.raise(room().mnuConnect.Click);
  ASSERT_TRUE(desktop.until([&] { return !offline(); }));
  EXPECT_EQ(shown(), "Message, /? for commands");
  desktop.raise(room().mnuDisconnect.Click);
  EXPECT_EQ(shown(), "Not connected dim");
}

TEST_F(Room, MenuBarAsDesigned) {
  // "-" hidden, "!" greyed; in brackets the entries below.
  const std::function<std::string(const std::vector<MenuItem*>&)> captions =
      [&](const std::vector<MenuItem*>& items) {
        std::string all;
        for (const MenuItem* item : items) {
          all += std::string(all.empty() ? "" : ", ") + (item->Visible ? "" : "-") +
                 (item->Enabled ? "" : "!") + item->Caption.get();
          if (!item->items().empty()) all += " (" + captions(item->items()) + ")";
        }
        return all;
      };
  EXPECT_EQ(
      captions(room().Menus()),
      "Tools (Connect, Disconnect, File Server, -, Config (Configure Games, Edit Profile), -, "
      "Quit), -User (Ping User, Get Profile, Private Message, Send File, Join CSDOOM Game), "
      "-Connection (Disconnect, Connect), Games (Launch CSDOOM Server), Radio (Stop, Stations "
      "(Z100 (Top 40 / Dance), KSHE 95 (Rock), KWJJ (Country)), Volume), Help (About Kelvaron, "
      "--, -Internet (!Check for updates, Visit Kelvaron homepage), -, Request Operator Status, "
      "Operator Commands (Kick User, -Ban User, Get users IP, -Send Server message))");
}

TEST_F(Room, FaultThatNoRuleMeetsIsTold) {
  desktop.client->serverAddress = "";
  desktop.raise(room().mnuConnect.Click);
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].style, box_style::kCritical);
  EXPECT_FALSE(desktop.ended());
}

}  // namespace
}  // namespace kelvaron::testing
