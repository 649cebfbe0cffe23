// What the user types, and the line that comes of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "chat/mute_list.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Commands : public ClientTest {
 protected:
  // What the server has got after the text was entered, "|" for TAB, lines joined by "; ".
  std::string sent(const std::string& text) {
    server.lines.clear();
    desktop.enter(text);
    desktop.client->send("END\r\n");
    EXPECT_TRUE(
        desktop.until([&] { return !server.lines.empty() && server.lines.back() == "END"; }));
    std::string all;
    for (std::size_t i = 0; i + 1 < server.lines.size(); ++i) {
      all += (i > 0 ? "; " : "") + server.lines[i];
    }
    std::ranges::replace(all, '\t', '|');
    return all;
  }
  std::string left() { return desktop.room().txtinput.Text; }
  std::string status() { return desktop.room().Label7.Caption; }
};

TEST_F(Commands, LinesWhilePresent) {
  constexpr bool kCleared = true;
  constexpr bool kStays = false;
  struct Case {
    std::string text;
    std::string sent;
    bool cleared;
  };
  const std::vector<Case> cases = {
      {"hello all", "Message|bob: |hello all", kCleared},
      {"", "Message|bob: |", kCleared},
      {" /me", "Message|bob: | /me", kCleared},
      {"a\tb", "Message|bob: |a|b", kCleared},
      {"/nothing", "Message|bob: |/nothing", kCleared},
      {"/ME waves", "ACTION|bob waves", kCleared},
      {"/me  waves", "ACTION|bob  waves", kCleared},
      {"/meow", "ACTION|bob w", kCleared},
      {"/me ", "ACTION|bob ", kCleared},
      {"/me", "", kStays},
      {"/SLAP ann", "ACTION|bob Slaps ann around with his handy dandy rubber chicken.", kCleared},
      {"/slap", "", kStays},
      {"/KISS ann", "ACTION|bob invites ann to kiss his/her rocket.", kCleared},
      {"/KISSME ann", "ACTION|bob kisses ann gently on the hand", kCleared},
      {"/kissme", "", kStays},
      {"/RETURN ann", "ACTION|bob returns the kiss from  ann and asks for a refund", kCleared},
      {"/FRAG", "ACTION|bob is ready to FRAG", kCleared},
      {"/fragged", "ACTION|bob is ready to FRAG", kCleared},
      {"/SLEEP", "ACTION|bob is getting tired and is about to retire.", kCleared},
      {"/COOL", "ACTION|bob would rather chat on Kelvaron than eat fried liver.", kCleared},
      {"/SOUND yeah", "ACTION|bob plays a sound (yeah.wav); SOUND|yeah", kCleared},
      {"/SOUND ", "ACTION|bob plays a sound (.wav); SOUND|", kCleared},
      {"/SOUND", "", kStays},
      {"/MSG hear ye", "MSG|hear ye", kCleared},
      {"/MSG", "", kStays},
      {"/GETIP ann", "GETIP|ann", kCleared},
      {"/GETIP", "", kStays},
      {"/KICK ann spam and more", "KICK|ann|spam and more", kCleared},
      {"/KICK ann", "KICK|ann|", kCleared},
      {"/KICK ann ", "KICK|ann|", kCleared},
      {"/KICK  ann", "KICK||ann", kCleared},
      {"/KICK", "", kCleared},
      {"/KICKann", "", kCleared},
      {"/? ", "Message|bob: |/? ", kCleared},
      {"/PLAY  KKRZ", "Message|bob: |/PLAY  KKRZ", kCleared},
      {"/PLAY KSHE", "Message|bob: |/PLAY KSHE", kCleared},
      {"/STOP", "", kCleared},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(sent(each.text), each.sent) << each.text;
    EXPECT_EQ(left(), each.cleared ? "" : each.text);
  }
  EXPECT_EQ(desktop.chat(), "") << "the own line is shown when it comes back";
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Commands, AwayAndBack) {
  struct Case {
    std::string text;
    std::string sent;
    std::string status;
  };
  const std::vector<Case> cases = {
      {"/away", "[AW]|bob", "AWAY"},
      {"/AWAY for lunch", "[AW]|bob", "AWAY"},
      {"/STOP", "", "AWAY"},
      {"/PLAY KKRZ", "", "AWAY"},
      {"/ME waves", "RETURNCS|bob; Message|bob: |/ME waves", "Ready to Play"},
      {"/ME waves", "ACTION|bob waves", "Ready to Play"},
      {"/away", "[AW]|bob", "AWAY"},
      {"", "RETURNCS|bob; Message|bob: |", "Ready to Play"},
      {"/away", "[AW]|bob", "AWAY"},
      {"/?", "RETURNCS|bob; Message|bob: |/?", "Ready to Play"},
  };
  EXPECT_EQ(status(), "Ready To Play");
  for (const Case& each : cases) {
    EXPECT_EQ(sent(each.text), each.sent) << each.text;
    EXPECT_EQ(status(), each.status) << each.text;
    EXPECT_EQ(left(), "");
  }
}

TEST_F(Commands, PingFindsWholeEntriesOnly) {
  const std::string nobody = "User is not logged in or is gurrently in a game.";
  EXPECT_EQ(sent("/PING"), "") << "an empty list has no match";
  EXPECT_EQ(desktop.boxes.size(), 1U);
  for (const char* entry : {"ann", "cy[IG]", "dee[AW]"}) desktop.room().List1.AddItem(entry);
  struct Case {
    std::string text;
    std::string sent;
    bool box;
    std::string left;
  };
  const std::vector<Case> cases = {
      {"/PING ann", "PINGUSER|ann|bob", false, ""},
      {"/ping Ann", "", true, ""},
      {"/PING cy", "", true, ""},
      {"/PING cy[IG]", "", false, "/PING cy[IG]"},
      {"/PING dee", "", true, ""},
      {"/PING dee[AW]", "PINGUSER|dee[AW]|bob", false, ""},
      {"/PING ", "", true, ""},
      {"/PING", "", false, "/PING"},
  };
  for (const Case& each : cases) {
    desktop.boxes.clear();
    EXPECT_EQ(sent(each.text), each.sent) << each.text;
    ASSERT_EQ(desktop.boxes.size(), each.box ? 1U : 0U) << each.text;
    if (each.box) {
      EXPECT_EQ(desktop.boxes[0].text, nobody);
    }
    EXPECT_EQ(left(), each.left) << each.text;
  }
  desktop.room().Label1.Caption =
      "\xA5"
      "bob";
  EXPECT_EQ(sent("/PING ann"),
            "PINGUSER|ann|\xA5"
            "bob");
}

TEST_F(Commands, MuteAndUnmute) {
  const auto texts = [&] {
    std::vector<std::string> all;
    for (const auto& box : desktop.boxes) all.push_back(box.text);
    desktop.boxes.clear();
    return all;
  };
  EXPECT_EQ(sent("/UNMUTE"), "");
  EXPECT_EQ(sent("/mute bob"), "");
  EXPECT_THAT(texts(), ElementsAre("BOB has been muted"));
  EXPECT_EQ(left(), "/mute bob");
  EXPECT_TRUE(desktop.shows<Muted>());
  Muted& muted = desktop.client->form<Muted>();
  desktop.raise(muted.Command1.Click);
  EXPECT_FALSE(desktop.shows<Muted>());

  sent("/MUTE Ann");
  sent("/MUTE bob");
  EXPECT_THAT(muted.List1.entries(), ElementsAre("BOB", "ANN", "BOB"));
  texts();
  sent("/MUTE");
  sent("/UNMUTE");
  sent("/UNMUTE nobody");
  EXPECT_THAT(texts(), IsEmpty());
  sent("/unmute Bob");
  EXPECT_THAT(texts(), ElementsAre("Bob Has been unmuted.", "Bob Has been unmuted."));
  EXPECT_THAT(muted.List1.entries(), ElementsAre("ANN"));
  EXPECT_EQ(left(), "/unmute Bob");
  EXPECT_TRUE(desktop.shows<Muted>());
}

TEST_F(Commands, HelpGoesWhereTheCaretStands) {
  desktop.enter("/?");
  const StyledText& view = desktop.room().txtOutput.Content;
  EXPECT_EQ(view.lineCount(), 13U);
  EXPECT_EQ(view.line(0), "KV / Command Help");
  EXPECT_EQ(view.line(11), "/PING USERNAME - Pings the user");
  EXPECT_EQ(view.run(5, 0).style, (TextStyle{Color{0, 255, 18}, false}));
  EXPECT_EQ(left(), "");
}

TEST_F(Commands, WithoutAConnectionTheTextStays) {
  server.hangUp();
  ASSERT_TRUE(
      desktop.until([&] { return desktop.client->sckClient().State() != SocketState::connected; }));
  for (const char* text : {"hello", "/me waves", "/away", "/sound x", "/kick ann"}) {
    desktop.enter(text);
    EXPECT_EQ(left(), text);
    EXPECT_EQ(status(), "Ready To Play");
  }
  desktop.room().Label7.Caption = "AWAY";
  desktop.enter("hello");
  EXPECT_EQ(left(), "hello");
  EXPECT_EQ(status(), "Ready to Play");
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Commands, OnlyEnterActsAndEveryChangePutsTheCaretAtTheEnd) {
  auto& box = desktop.room().txtinput;
  desktop.edge.run([&] {
    box.SelStart = 0;
    box.Text = "hello";
  });
  EXPECT_EQ(box.SelStart.get(), 5);
  EXPECT_EQ(box.SelColor.get(), (Color{96, 246, 241}));
  desktop.raise(box.KeyDown, 32, 0);
  EXPECT_EQ(left(), "hello");
  desktop.raise(box.KeyDown, key_code::kEnter, 1);
  EXPECT_EQ(left(), "");
}

}  // namespace
}  // namespace kelvaron::testing
