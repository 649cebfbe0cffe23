// The dialogs and menu entries of moderation: what they ask, and what goes to the server.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "moderation/kick_form.h"
#include "moderation/status_request.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

using Lines = std::vector<std::string>;

class Moderation : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    for (const char* entry : {"ann", "Cy \xC9", "dee[IG]"}) room().List1.AddItem(entry);
  }
  frmGetOP& request() { return desktop.client->form<frmGetOP>(); }
  frmkick& kick() { return desktop.client->form<frmkick>(); }

  // What the server has received by now; a line sent last tells when that is all.
  Lines received() {
    desktop.client->send("fence\r\n");
    EXPECT_TRUE(
        desktop.until([&] { return !server.lines.empty() && server.lines.back() == "fence"; }));
    Lines lines = std::move(server.lines);
    server.lines.clear();
    lines.pop_back();
    return lines;
  }
  void disconnect() {
    server.hangUp();
    ASSERT_TRUE(desktop.until(
        [&] { return desktop.client->sckClient().State() != SocketState::connected; }));
  }
  void serverSays(const std::string& bytes) {
    server.say(bytes);
    ASSERT_TRUE(desktop.until([&] { return desktop.shows<frmkick>(); }));
  }
};

TEST_F(Moderation, KickAndBanAskForAUserAndAReason) {
  struct Case {
    const char* what;
    int selected;
    std::deque<std::string> typed;
    Lines initial;
    std::vector<std::string> titles;
    std::string fields;  // of the line that goes out; empty for none
  };
  const std::string kick = "Kick User";
  const std::string unknown = "User dosent exist!";
  const std::vector<Case> cases = {
      {"the selected one",
       0,
       {"ann", "spam\tand more"},
       {"ann", ""},
       {kick, kick},
       "ann\tspam\tand more"},
      {"nobody selected", -1, {"ann", "spam"}, {"", ""}, {kick, kick}, "ann\tspam"},
      {"dismissed at once", 1, {}, {"Cy \xC9"}, {kick}, ""},
      {"reason dismissed", 0, {"ann"}, {"ann", ""}, {kick, kick}, "ann\t"},
      {"in other capitals", 0, {"cY \xE9", "x"}, {"ann", ""}, {kick, kick}, "cY \xE9\tx"},
      {"with the tag", 2, {"DEE[ig]", "x"}, {"dee[IG]", ""}, {kick, kick}, "DEE[ig]\tx"},
      {"without the tag", 2, {"dee", "x"}, {"dee[IG]"}, {kick, unknown}, ""},
      {"a part of a name", 0, {"an", "x"}, {"ann"}, {kick, unknown}, ""},
  };
  for (const bool bans : {false, true}) {
    for (const Case& each : cases) {
      SCOPED_TRACE(std::string(bans ? "ban, " : "kick, ") + each.what);
      selectOnly(room().List1, each.selected);
      desktop.boxes.clear();
      desktop.initialInputs.clear();
      desktop.inputs = each.typed;
      desktop.raise(bans ? room().mnuBan.Click : room().mnuKick.Click);
      EXPECT_EQ(desktop.initialInputs, each.initial);
      ASSERT_EQ(desktop.boxes.size(), each.titles.size());
      for (std::size_t i = 0; i < each.titles.size(); ++i) {
        const std::string& title = each.titles[i];
        EXPECT_EQ(desktop.boxes[i].title, title == kick && bans ? "Ban User" : title);
      }
      const std::string keyword = bans ? "BAN\t" : "KICK\t";
      EXPECT_EQ(received(), each.fields.empty() ? Lines{} : Lines{keyword + each.fields});
    }
  }
}

TEST_F(Moderation, WordsOfTheDialogs) {
  const auto prompts = [&](const MenuItem& entry, std::deque<std::string> typed) {
    desktop.boxes.clear();
    desktop.inputs = std::move(typed);
    desktop.raise(entry.Click);
    Lines texts;
    for (const auto& box : desktop.boxes) texts.push_back(box.title + ": " + box.text);
    return texts;
  };
  EXPECT_THAT(prompts(room().mnuKick, {"ann"}),
              ElementsAre("Kick User: Enter the usernick you want to kick",
                          "Kick User: Enter the reason, if any, for kicking this user"));
  EXPECT_THAT(prompts(room().mnuBan, {"ann"}),
              ElementsAre("Ban User: Enter the usernick you want to ban",
                          "Ban User: Enter the reason, if any, for banning this user"));
  EXPECT_THAT(prompts(room().mnuGetIP, {}), ElementsAre("Get IP: Enter a users IP to get"));
  EXPECT_THAT(prompts(room().mnuSendServerMSG, {}),
              ElementsAre("Enter Server Message: Enter the message to send to all users."));
  room().List1.Clear();
  EXPECT_THAT(
      prompts(room().mnuKick, {"ann"}),
      ElementsAre(StartsWith("Kick User"), "User dosent exist!: No user in chat has that name!"));
  EXPECT_EQ(desktop.boxes.back().style, box_style::kInformation);
}

TEST_F(Moderation, AddressAndMessageGoOutAsTyped) {
  struct Case {
    const MenuItem& entry;
    std::deque<std::string> typed;
    Lines sent;
  };
  selectOnly(room().List1, 2);
  for (const Case& each : {Case{room().mnuGetIP, {"nobody here"}, {"GETIP\tnobody here"}},
                           Case{room().mnuGetIP, {}, {}},
                           Case{room().mnuSendServerMSG, {"good night"}, {"MSG\tgood night"}},
                           Case{room().mnuSendServerMSG, {}, {}}}) {
    desktop.inputs = each.typed;
    desktop.raise(each.entry.Click);
    EXPECT_EQ(received(), each.sent);
  }
  EXPECT_THAT(desktop.initialInputs, ElementsAre("dee[IG]", "dee[IG]", "", ""));
}

TEST_F(Moderation, RequestCarriesTheNameWithoutTheMark) {
  room().Label1.Caption =
      "\xA5"
      "bob";
  for (const auto& [mail, password] : {std::pair{"b@example.org", "se cret"}, std::pair{"", ""}}) {
    desktop.raise(room().mnuGetOP.Click);
    ASSERT_TRUE(desktop.shows<frmGetOP>());
    EXPECT_EQ(request().txtEMail.Text.get() + request().txtPassword.Text.get(), "");
    request().txtEMail.Text = mail;
    request().txtPassword.Text = password;
    desktop.raise(request().cmdOK.Click);
    EXPECT_EQ(desktop.client->loadedForm<frmGetOP>(), nullptr);
    EXPECT_THAT(received(), ElementsAre("RequestOP\tbob\t" + std::string(mail) + "\t" + password));
  }
  desktop.raise(room().mnuGetOP.Click);
  desktop.raise(request().cmdCancel.Click);
  EXPECT_EQ(desktop.client->loadedForm<frmGetOP>(), nullptr);
  EXPECT_THAT(received(), IsEmpty());
}

TEST_F(Moderation, TheServerOpensTheKickWithProof) {
  serverSays("Kicker\r\n");
  EXPECT_THAT(kick().Combo1.items(), ElementsAre("ann", "Cy \xC9", "dee[IG]"));
  EXPECT_EQ(kick().Combo1.Text.get(), "");
  EXPECT_EQ(kick().Text1.PasswordChar.get(), '\xA4');
  kick().Combo1.Text = "dee[IG]";
  kick().Text1.Text = "se cret";
  kick().Text2.Text = "b@example.org";
  // A second line for the open form leaves what was typed.
  server.say("Kicker\r\nUsers\teve\r\n");
  ASSERT_TRUE(desktop.until([&] { return room().List1.ListCount() == 4; }));
  desktop.raise(kick().Command1.Click);
  EXPECT_EQ(desktop.client->loadedForm<frmkick>(), nullptr);
  EXPECT_THAT(received(), ElementsAre("THEKICK\tbob\tdee[IG]\tse cret\tb@example.org"));

  serverSays("Kicker\r\n");
  EXPECT_EQ(kick().Combo1.items().size(), 4U);
  EXPECT_EQ(kick().Text1.Text.get(), "");
  desktop.raise(kick().Command2.Click);
  EXPECT_EQ(desktop.client->loadedForm<frmkick>(), nullptr);
  EXPECT_THAT(received(), IsEmpty());
}

TEST_F(Moderation, WithoutAConnectionNothingIsLost) {
  desktop.raise(room().mnuGetOP.Click);
  serverSays("Kicker\r\n");
  disconnect();
  request().txtEMail.Text = "b@example.org";
  desktop.raise(request().cmdOK.Click);
  desktop.raise(kick().Command1.Click);
  EXPECT_TRUE(desktop.shows<frmGetOP>());
  EXPECT_EQ(request().txtEMail.Text.get(), "b@example.org");
  EXPECT_TRUE(desktop.shows<frmkick>());
  for (const MenuItem* entry : {&room().mnuKick, &room().mnuGetIP, &room().mnuSendServerMSG}) {
    desktop.inputs = {"ann", "ann"};
    desktop.raise(entry->Click);
    EXPECT_EQ(desktop.boxes.back().text,
              "Nothing was sent, as there is no connection to the server.");
  }
}

}  // namespace
}  // namespace kelvaron::testing
