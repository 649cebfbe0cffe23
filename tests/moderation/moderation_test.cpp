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

using Lines = std::vector<std::string>;

class Moderation : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    for (const char* entry : {"ann", "Cy \xC9", "dee[IG]"}) room().List1.AddItem(entry);
  }
  frmGetOP& request() { return form<frmGetOP>(); }
  frmkick& kick() { return form<frmkick>(); }

  // Title and text of each box that an entry's click brings.
  Lines boxesOf(const MenuItem& entry, const std::deque<std::string>& typed) {
    desktop.boxes.clear();
    desktop.initialInputs.clear();
    desktop.inputs = typed;
    desktop.raise(entry.Click);
    Lines texts;
    for (const auto& box : desktop.boxes) texts.push_back(box.title + ": " + box.text);
    return texts;
  }
};

TEST_F(Moderation, KickAndBanAskForAUserAndAReason) {
  struct Case {
    const char* what;
    int selected;
    std::deque<std::string> typed;
    Lines initial;       // of the boxes; one for the user alone, two with the reason
    std::string fields;  // of the line that goes out; empty for none
  };
  const std::vector<Case> cases = {
      {"the selected one", 0, {"ann", "spam\tand more"}, {"ann", ""}, "ann\tspam\tand more"},
      {"nobody selected", -1, {"ann", "spam"}, {"", ""}, "ann\tspam"},
      {"dismissed at once", 1, {}, {"Cy \xC9"}, ""},
      {"reason dismissed", 0, {"ann"}, {"ann", ""}, "ann\t"},
      {"in other capitals", 0, {"cY \xE9", "x"}, {"ann", ""}, "cY \xE9\tx"},
      {"with the tag", 2, {"DEE[ig]", "x"}, {"dee[IG]", ""}, "DEE[ig]\tx"},
      {"without the tag", 2, {"dee", "x"}, {"dee[IG]"}, ""},
      {"a part of a name", 0, {"an", "x"}, {"ann"}, ""},
  };
  const Lines kicking = {"Kick User: Enter the usernick you want to kick",
                         "Kick User: Enter the reason, if any, for kicking this user"};
  const Lines banning = {"Ban User: Enter the usernick you want to ban",
                         "Ban User: Enter the reason, if any, for banning this user"};
  for (const bool bans : {false, true}) {
    for (const Case& each : cases) {
      SCOPED_TRACE((bans ? "ban, " : "kick, ") + std::string(each.what));
      const bool unknown = each.initial.size() == 1 && !each.typed.empty();
      Lines boxes = bans ? banning : kicking;
      boxes.resize(each.initial.size());
      if (unknown) boxes.emplace_back("User dosent exist!: No user in chat has that name!");
      selectOnly(room().List1, each.selected);
      EXPECT_EQ(boxesOf(bans ? room().mnuBan : room().mnuKick, each.typed), boxes);
      EXPECT_EQ(desktop.boxes.back().style, unknown ? box_style::kInformation : box_style::kPlain);
      EXPECT_EQ(desktop.initialInputs, each.initial);
      const std::string keyword = bans ? "BAN\t" : "KICK\t";
      EXPECT_EQ(sent(), each.fields.empty() ? Lines{} : Lines{keyword + each.fields});
    }
  }
}

TEST_F(Moderation, AddressAndMessageGoOutAsTyped) {
  const std::string address = "Get IP: Enter a users IP to get";
  const std::string message = "Enter Server Message: Enter the message to send to all users.";
  struct Case {
    const MenuItem& entry;
    std::deque<std::string> typed;
    std::string box, initial;
    Lines sent;
  };
  selectOnly(room().List1, 2);
  for (const Case& each :
       {Case{room().mnuGetIP, {"nobody here"}, address, "dee[IG]", {"GETIP\tnobody here"}},
        Case{room().mnuGetIP, {}, address, "dee[IG]", {}},
        Case{room().mnuSendServerMSG, {"good night"}, message, "", {"MSG\tgood night"}},
        Case{room().mnuSendServerMSG, {}, message, "", {}}}) {
    EXPECT_THAT(boxesOf(each.entry, each.typed), ElementsAre(each.box));
    EXPECT_THAT(desktop.initialInputs, ElementsAre(each.initial));
    EXPECT_EQ(sent(), each.sent);
  }
}

TEST_F(Moderation, RequestCarriesTheNameWithoutTheMark) {
  room().Label1.Caption = std::string("\xA5") + "bob";
  for (const auto& [mail, password] : {std::pair{"b@example.org", "se cret"}, std::pair{"", ""}}) {
    desktop.raise(room().mnuGetOP.Click);
    ASSERT_TRUE(desktop.shows<frmGetOP>());
    EXPECT_EQ(request().txtEMail.Text.get() + request().txtPassword.Text.get(), "");
    request().txtEMail.Text = mail;
    request().txtPassword.Text = password;
    click(request().cmdOK);
    EXPECT_EQ(desktop.client->loadedForm<frmGetOP>(), nullptr);
    EXPECT_THAT(sent(), ElementsAre("RequestOP\tbob\t" + std::string(mail) + "\t" + password));
  }
  desktop.raise(room().mnuGetOP.Click);
  click(request().cmdCancel);
  EXPECT_EQ(desktop.client->loadedForm<frmGetOP>(), nullptr);
  EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Moderation, TheServerOpensTheKickWithProof) {
  arrive("Kicker\r\n");
  EXPECT_TRUE(desktop.shows<frmkick>());
  EXPECT_THAT(kick().Combo1.items(), ElementsAre("ann", "Cy \xC9", "dee[IG]"));
  EXPECT_EQ(kick().Combo1.Text.get(), "");
  EXPECT_EQ(kick().Text1.PasswordChar.get(), '\xA4');
  kick().Combo1.Text = "dee[IG]";
  kick().Text1.Text = "se cret";
  kick().Text2.Text = "b@example.org";
  // A second line for the open form leaves what was typed.
  arrive("Kicker\r\nUsers\teve\r\n");
  click(kick().Command1);
  EXPECT_EQ(desktop.client->loadedForm<frmkick>(), nullptr);
  EXPECT_THAT(sent(), ElementsAre("THEKICK\tbob\tdee[IG]\tse cret\tb@example.org"));

  arrive("Kicker\r\n");
  EXPECT_EQ(kick().Combo1.items().size(), 4U);
  EXPECT_EQ(kick().Text1.Text.get(), "");
  click(kick().Command2);
  EXPECT_EQ(desktop.client->loadedForm<frmkick>(), nullptr);
  EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Moderation, WithoutAConnectionNothingIsLost) {
  desktop.raise(room().mnuGetOP.Click);
  arrive("Kicker\r\n");
  hangUp();
  request().txtEMail.Text = "b@example.org";
  click(request().cmdOK);
  click(kick().Command1);
  EXPECT_TRUE(desktop.shows<frmGetOP>());
  EXPECT_EQ(request().txtEMail.Text.get(), "b@example.org");
  EXPECT_TRUE(desktop.shows<frmkick>());
  for (const MenuItem* entry : {&room().mnuKick, &room().mnuGetIP, &room().mnuSendServerMSG}) {
    boxesOf(*entry, {"ann", "ann"});
    EXPECT_EQ(desktop.boxes.back().text,
              "Nothing was sent, as there is no connection to the server.");
  }
}

}  // namespace
}  // namespace kelvaron::testing
