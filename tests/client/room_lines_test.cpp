// What the room's inbound lines leave in the chat view, with colours, and around it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "chat/mute_list.h"
#include "session/message_of_the_day.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The last `count` lines as "(red,green,blue)text" per run, "*" for bold.
std::vector<std::string> styledTail(const StyledText& text, std::size_t count) {
  std::vector<std::string> lines;
  const std::size_t end = text.lineCount() - 1;
  for (std::size_t i = end < count ? 0 : end - count; i < end; ++i) {
    std::string line;
    for (std::size_t k = 0; k < text.runCount(i); ++k) {
      const StyledText::Run run = text.run(i, k);
      const Color color = run.style.color;
      line += "(" + std::to_string(color.red) + "," + std::to_string(color.green) + "," +
              std::to_string(color.blue) + (run.style.bold ? "*)" : ")") +
              std::string(text.line(i).substr(run.begin, run.end - run.begin));
    }
    lines.push_back(line);
  }
  return lines;
}

class RoomLines : public ClientTest {
 protected:
  StyledText& view() { return desktop.room().txtOutput.Content; }
};

TEST_F(RoomLines, ColoursOfEachWriterAndOfTheAnnouncementBehindIt) {
  struct Case {
    std::string arrival;
    std::vector<std::string> lines;
  };
  const std::vector<Case> cases = {
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
      {"STATUSTEXT\t-1\tx\r\n", {}},
      {"STATUSTEXT\t 1\tx\r\n", {}},
      {"STATUSTEXT\tred\tx\r\n", {}},
      {"STATUSTEXT\t\tx\r\n", {}},
      {"STATUSTEXT\t255\r\n", {}},
      {"Announce\tstill thin\r\n", {"(255,0,0)still thin"}},
      // Behind a room line what fails is passed over, step by step.
      {"Message\tann: \tx\r\nSTATUSTEXT\tred\ty\r\n",
       {"(219,178,240)ann: (96,246,241)x", "(96,246,241*)y"}},
      {"Message\tann: \r\nAnnounce\tz\r\n", {"(219,178,240)ann: (96,246,241)z"}},
      {"Message\tann: \t\r\n", {"(219,178,240)ann: "}},
  };
  for (const Case& each : cases) {
    const std::size_t before = view().lineCount();
    arrive(each.arrival);
    EXPECT_EQ(view().lineCount() - before, each.lines.size()) << each.arrival;
    EXPECT_EQ(styledTail(view(), each.lines.size()), each.lines) << each.arrival;
  }
}

TEST_F(RoomLines, SoundsGoWithTheirLines) {
  arrive("Announce\ta\r\nPM\tann\tb\r\nPLAYSOUND\tyeah\r\nMessage\tann: \tc\r\nPLAYSOUND\r\n");
  EXPECT_THAT(desktop.sounds, ElementsAre("online", "ringin", "yeah"));
}

TEST_F(RoomLines, GrantIsOneExactSentence) {
  const std::string grant = "Moderator Privlidges Granted - You are now a moderator.";
  for (const std::string& text : {grant.substr(1), grant + " ", std::string("moderator")}) {
    arrive("STATUSTEXT\t255\t" + text + "\r\n");
    EXPECT_EQ(desktop.room().Label1.Caption.get(), "bob");
  }
  arrive("STATUSTEXT\t255\t" + grant + "\r\n");
  EXPECT_EQ(desktop.room().Label1.Caption.get(),
            "\xA5"
            "bob");
  arrive("STATUSTEXT\t255\t" + grant + "\r\n");
  EXPECT_EQ(desktop.room().Label1.Caption.get(),
            "\xA5\xA5"
            "bob");
  EXPECT_EQ(desktop.client->UserName, "bob");
}

TEST_F(RoomLines, MuteDropsRoomLinesAlone) {
  desktop.client->form<Muted>().List1.AddItem("ANN");
  arrive("Message\tAnn: \thello\r\nUsers\tann\r\n");
  EXPECT_EQ(desktop.chat(), "");
  EXPECT_THAT(desktop.room().List1.entries(), ElementsAre("ann"));
  // Somebody else whose name begins alike, and other kinds of line of the muted user.
  arrive(
      "Message\tAnna: \thi\r\nMessage\tann\tno colon\r\nPM\tann\tpsst\r\nAnnounce\tann is "
      "here\r\n");
  EXPECT_EQ(desktop.chat(), "Anna: hi\nannno colon\nPrivate Message From ann: psst\nann is here\n");
  desktop.client->form<Muted>().List1.AddItem("\xC9MILE");
  arrive("Message\t\xE9mile: \tsalut\r\n");
  EXPECT_THAT(desktop.chat(), ::testing::Not(::testing::HasSubstr("salut")));
}

TEST_F(RoomLines, WriterThatMovesTheCaretFindsTheColourLeftAtTheEnd) {
  arrive("PM\tann\tpsst\r\nMessage\tann: \thello\r\n");
  view().setCaret({0, 3});
  desktop.enter("/?");
  EXPECT_EQ(view().line(0), "PriKV / Command Help");
  arrive("Announce\tback at the end\r\n");
  EXPECT_THAT(styledTail(view(), 1), ElementsAre("(96,246,241)back at the end"));
}

TEST_F(RoomLines, BoxesAndWhatFollowsThem) {
  struct Case {
    std::string arrival;
    int style;
    std::string title;
    std::string text;
    bool closed;
  };
  const std::vector<Case> cases = {
      {"MSGBOX\tlook\r\n", 0, "Kelvaron", "look", false},
      {"BANUSER\tann\tspam\r\n", 48, "Banned from Kelvaron!",
       "You have been banned from Kelvaron by ann!\r\n\r\nReason: spam", true},
      {"BAD\r\n", 0, "Sorry!",
       "To avoid confusion you are unable to login as QZN or Sorrel. Please relogin, using a "
       "different nickname.",
       true},
      {"banned\r\n", 64, "You have been banned!",
       "You have been banned from Kelvaron! If this is a mistake contact QZN at "
       "moderators@localhost or Sorrel to dispute it.",
       true},
      {"DOUBLE\r\n", 0, "Kelvaron",
       "Another users has chosen that name. Please use a different name", true},
  };
  for (const Case& each : cases) {
    desktop.boxes.clear();
    ASSERT_EQ(desktop.client->sckClient().State(), SocketState::connected);
    arrive(each.arrival);
    ASSERT_EQ(desktop.boxes.size(), 1U) << each.arrival;
    EXPECT_EQ(desktop.boxes[0].text, each.text);
    EXPECT_EQ(desktop.boxes[0].title, each.title);
    EXPECT_EQ(desktop.boxes[0].style, each.style);
    EXPECT_EQ(desktop.client->sckClient().State() == SocketState::closed, each.closed);
    EXPECT_TRUE(desktop.shows<frmMain>());
    EXPECT_FALSE(desktop.ended());
    if (!each.closed) continue;
    desktop.raise(desktop.room().mnuConnect.Click);
    ASSERT_TRUE(desktop.until(
        [&] { return desktop.client->sckClient().State() == SocketState::connected; }));
  }
  EXPECT_EQ(desktop.chat(), "");
}

TEST_F(RoomLines, KickedEndsTheProgramBeforeTheNextLine) {
  arrive("Kicked\tann\tspam\r\nAnnounce\tnever seen\r\n");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].title, "Kicked!");
  EXPECT_EQ(desktop.boxes[0].style, 48);
  EXPECT_EQ(desktop.boxes[0].text,
            "You have been kicked off the server by ann\r\n\r\nReason: spam");
  EXPECT_TRUE(desktop.ended());
  EXPECT_THAT(desktop.sounds, IsEmpty());
}

TEST_F(RoomLines, MessageOfTheDayOpensItsWindow) {
  arrive("MOTD\r\n");
  EXPECT_FALSE(desktop.shows<Form5>());
  arrive("MOTD\tWelcome <b>all</b>\r\n");
  ASSERT_TRUE(desktop.shows<Form5>());
  Form5& form = desktop.client->form<Form5>();
  EXPECT_EQ(form.Text1.Text.get(), "Welcome <b>all</b>");
  desktop.raise(form.Command1.Click);
  EXPECT_EQ(desktop.client->loadedForm<Form5>(), nullptr);
}

TEST_F(RoomLines, AddressQuestionsAreAnswered) {
  server.lines.clear();
  arrive("getip\r\nBANIP\r\nGETIP\r\n");
  ASSERT_TRUE(desktop.until([&] { return server.lines.size() >= 2; }));
  EXPECT_THAT(server.lines, ElementsAre("IP\t127.0.0.1", "IPBAN\t127.0.0.1"));
}

}  // namespace
}  // namespace kelvaron::testing
