// What the room's inbound lines leave in the chat view, with colours, and around it.
#include <gmock/gmock.h>

#include "chat/mute_list.h"
#include "session/message_of_the_day.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Lines from the one at `begin` on as "(red,green,blue)text" per run, "*" for bold.
std::vector<std::string> styled(const StyledText& text, std::size_t begin) {
  std::vector<std::string> lines;
  for (std::size_t i = begin; i + 1 < text.lineCount(); ++i) {
    std::string& line = lines.emplace_back();
    for (std::size_t k = 0; k < text.runCount(i); ++k) {
      const auto [from, end, style] = text.run(i, k);
      const auto [red, green, blue] = style.color;
      line += "(" + std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(blue) +
              (style.bold ? "*)" : ")") + std::string(text.line(i).substr(from, end - from));
    }
  }
  return lines;
}

class RoomLines : public ClientTest {
 protected:
  StyledText& view() { return room().txtOutput.Content; }
};

TEST_F(RoomLines, ColoursOfEachWriterAndOfTheAnnouncementBehindIt) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
      {"Announce\thi\r\n", {"(190,190,0)hi"}},
      {"Message\tann: \thello\r\nAnnounce\thi\r\n",
       {"(219,178,240)ann: (96,246,241)hello", "(96,246,241)hi"}},
      {"PM\tann\tpsst\r\nAnnounce\thi\r\n",
       {"(255,0,18)Private Message From ann: (185,190,215)psst", "(190,190,0)hi"}},
      {"STATUSTEXT\t255\tred\r\nAnnounce\thi\r\n", {"(255,0,0*)red", "(255,0,0)hi"}},
      {"STATUSTEXT\t16711680\tblue\r\n", {"(0,0,255*)blue"}},
      {"STATUSTEXT\t16777215\twhite\r\n", {"(255,255,255*)white"}},
      // Not a colour: the line is lost, and with it the rest of the read; bold is off again.
      {"STATUSTEXT\t16777216\tx\r\nAnnounce\tlost\r\n", {}},
      {"STATUSTEXT\t 1\tx\r\n", {}},
      {"STATUSTEXT\t1x\tx\r\n", {}},
      {"STATUSTEXT\t255\r\n", {}},
      {"Announce\tstill thin\r\n", {"(255,0,0)still thin"}},
      // Behind a room line what fails is passed over, step by step.
      {"Message\tann: \tx\r\nSTATUSTEXT\tred\ty\r\n",
       {"(219,178,240)ann: (96,246,241)x", "(96,246,241*)y"}},
      {"Message\tann: \r\nAnnounce\tz\r\n", {"(219,178,240)ann: (96,246,241)z"}},
      {"Message\tann: \t\r\n", {"(219,178,240)ann: "}}};
  for (const auto& [arrival, lines] : cases) {
    const std::size_t before = view().lineCount();
    arrive(arrival);
    EXPECT_EQ(styled(view(), before - 1), lines) << arrival;
  }
}

TEST_F(RoomLines, SoundsGoWithTheirLines) {
  arrive("Announce\ta\r\nPM\tann\tb\r\nPLAYSOUND\tyeah\r\nMessage\tann: \tc\r\nPLAYSOUND\r\n");
  EXPECT_THAT(desktop.sounds, ElementsAre("online", "ringin", "yeah"));
}

TEST_F(RoomLines, GrantIsOneExactSentence) {
  const std::string grant = "Moderator Privlidges Granted - You are now a moderator.";
  const auto nameAfter = [&](const std::string& text) {
    arrive("STATUSTEXT\t255\t" + text + "\r\n");
    return room().Label1.Caption.get();
  };
  for (const std::string& text : {grant.substr(1), grant + " ", std::string("moderator")}) {
    EXPECT_EQ(nameAfter(text), "bob");
  }
  EXPECT_EQ(nameAfter(grant), "\245bob");
  EXPECT_EQ(nameAfter(grant), "\245\245bob");
  EXPECT_EQ(desktop.client->UserName, "bob");
}

TEST_F(RoomLines, MuteDropsRoomLinesAlone) {
  form<Muted>().List1.AddItem("ANN");
  arrive("Message\tAnn: \thello\r\nUsers\tann\r\n");
  EXPECT_EQ(desktop.chat(), "");
  EXPECT_THAT(room().List1.entries(), ElementsAre("ann"));
  // Somebody else whose name begins alike, and other kinds of line of the muted user.
  arrive("Message\tAnna: \thi\r\nMessage\tann\tno colon\r\nPM\tann\tpsst\r\n");
  EXPECT_EQ(desktop.chat(), "Anna: hi\nannno colon\nPrivate Message From ann: psst\n");
  form<Muted>().List1.AddItem("\xC9MILE");
  arrive("Message\t\xE9mile: \tsalut\r\n");
  EXPECT_THAT(desktop.chat(), ::testing::Not(::testing::HasSubstr("salut")));
}

TEST_F(RoomLines, HelpGoesWhereTheCaretStandsAndLeavesTheColourAtTheEnd) {
  arrive("PM\tann\tpsst\r\nMessage\tann: \thello\r\n");
  view().setCaret({0, 3});
  desktop.enter("/?");
  EXPECT_EQ(view().lineCount(), 15U);
  EXPECT_EQ(view().line(0), "PriKV / Command Help");
  EXPECT_EQ(view().line(11), "/PING USERNAME - Pings the user");
  EXPECT_EQ(view().run(5, 0).style, (TextStyle{Color{0, 255, 18}, false}));
  arrive("Announce\tback at the end\r\n");
  EXPECT_EQ(styled(view(), 0).back(), "(96,246,241)back at the end");
}

TEST_F(RoomLines, BoxesAndWhatFollowsThem) {
  // All but the first close the connection.
  const std::vector<std::tuple<std::string, int, std::string, std::string>> cases = {
      {"MSGBOX\tlook\r\n", 0, "Kelvaron", "look"},
      {"BANUSER\tann\tspam\r\n", 48, "Banned from Kelvaron!",
       "You have been banned from Kelvaron by ann!\r\n\r\nReason: spam"},
      {"BAD\r\n", 0, "Sorry!",
       "To avoid confusion you are unable to login as QZN or Sorrel. Please relogin, using a "
       "different nickname."},
      {"banned\r\n", 64, "You have been banned!",
       "You have been banned from Kelvaron! If this is a mistake contact QZN at "
       "moderators@localhost or Sorrel to dispute it."},
      {"DOUBLE\r\n", 0, "Kelvaron",
       "Another users has chosen that name. Please use a different name"}};
  for (const auto& [arrival, style, title, text] : cases) {
    arrive(arrival);
    EXPECT_EQ(desktop.boxes.at(0).title, title);
    EXPECT_EQ(desktop.boxes.at(0).style, style);
    EXPECT_THAT(boxTexts(), ElementsAre(text));
    EXPECT_EQ(desktop.client->sckClient().State(),
              text == "look" ? SocketState::connected : SocketState::closed);
    EXPECT_TRUE(desktop.shows<frmMain>());
    EXPECT_FALSE(desktop.ended());
    desktop.raise(room().mnuConnect.Click);
    ASSERT_TRUE(desktop.until([&] { return !offline(); }));
  }
  EXPECT_EQ(desktop.chat(), "");
}

TEST_F(RoomLines, KickedEndsTheProgramBeforeTheNextLine) {
  arrive("Kicked\tann\tspam\r\nAnnounce\tnever seen\r\n");
  EXPECT_EQ(desktop.boxes.at(0).title, "Kicked!");
  EXPECT_EQ(desktop.boxes.at(0).style, 48);
  EXPECT_THAT(boxTexts(),
              ElementsAre("You have been kicked off the server by ann\r\n\r\nReason: spam"));
  EXPECT_TRUE(desktop.ended());
  EXPECT_THAT(desktop.sounds, IsEmpty());
}

TEST_F(RoomLines, MessageOfTheDayOpensItsWindow) {
  arrive("MOTD\r\n");
  EXPECT_FALSE(desktop.shows<Form5>());
  arrive("MOTD\tWelcome <b>all</b>\r\n");
  ASSERT_TRUE(desktop.shows<Form5>());
  EXPECT_EQ(form<Form5>().Text1.Text.get(), "Welcome <b>all</b>");
  click(form<Form5>().Command1);
  EXPECT_EQ(desktop.client->loadedForm<Form5>(), nullptr);
}

TEST_F(RoomLines, AddressQuestionsAreAnswered) {
  arrive("getip\r\nBANIP\r\nGETIP\r\n");
  EXPECT_THAT(received(2), ElementsAre("IP\t127.0.0.1", "IPBAN\t127.0.0.1"));
}

}  // namespace
}  // namespace kelvaron::testing
