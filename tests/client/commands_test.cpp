// What the user types, and the line that comes of it.
#include <gmock/gmock.h>

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
    desktop.enter(text);
    std::string all;
    for (const std::string& line : ClientTest::sent()) all += (all.empty() ? "" : "; ") + line;
    std::ranges::replace(all, '\t', '|');
    return all;
  }
  std::string left() { return room().txtinput.Text; }
  std::string status() { return room().Label7.Caption; }
};

TEST_F(Commands, WhatLooksLikeOneAndIsNoneIsMarked) {
  for (const auto& [text, marked] : {std::pair{"/pm bob secret", true},
                                     {"/", true},
                                     {"/? ", true},
                                     {"/?", false},
                                     {"", false},
                                     {"/kick ann", false},
                                     {"a/b", false},
                                     {" /me", false}}) {
    desktop.edge.run([&, typed = text] { room().txtinput.Text = typed; });
    EXPECT_EQ(!room().txtinput.Warning.get().empty(), marked) << text;
  }
  room().txtinput.Text = "/pm bob secret";
  EXPECT_EQ(room().txtinput.Warning.get(), "/pm is no command and will be said to everybody");
  // Who is away says even commands that are compared later.
  room().Label7.Caption = "AWAY";
  room().txtinput.Text = "/slap ann";
  EXPECT_FALSE(room().txtinput.Warning.get().empty());
}

TEST_F(Commands, LinesWhilePresent) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"hello all", "Message|bob: |hello all"},
      {"", "Message|bob: |"},
      {" /me", "Message|bob: | /me"},
      {"/nothing", "Message|bob: |/nothing"},
      {"/ME waves", "ACTION|bob waves"},
      {"/me  waves", "ACTION|bob  waves"},
      {"/meow", "ACTION|bob w"},
      {"/me ", "ACTION|bob "},
      {"/me", ""},
      {"/SLAP ann", "ACTION|bob Slaps ann around with his handy dandy rubber chicken."},
      {"/KISS ann", "ACTION|bob invites ann to kiss his/her rocket."},
      {"/KISSME ann", "ACTION|bob kisses ann gently on the hand"},
      {"/RETURN ann", "ACTION|bob returns the kiss from  ann and asks for a refund"},
      {"/FRAG", "ACTION|bob is ready to FRAG"},
      {"/SLEEP", "ACTION|bob is getting tired and is about to retire."},
      {"/COOL", "ACTION|bob would rather chat on Kelvaron than eat fried liver."},
      {"/SOUND yeah", "ACTION|bob plays a sound (yeah.wav); SOUND|yeah"},
      {"/MSG hear ye", "MSG|hear ye"},
      {"/GETIP ann", "GETIP|ann"},
      {"/KICK ann spam and more", "KICK|ann|spam and more"},
      {"/KICK ann", "KICK|ann|"},
      {"/KICK  ann", "KICK||ann"},
      {"/KICK", ""},
      {"/? ", "Message|bob: |/? "},
      {"/PLAY  KKRZ", "Message|bob: |/PLAY  KKRZ"}};
  for (const auto& [text, line] : cases) {
    EXPECT_EQ(sent(text), line) << text;
    EXPECT_EQ(left(), text == "/me" ? text : "");
  }
  EXPECT_EQ(desktop.chat(), "") << "the own line is shown when it comes back";
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Commands, AwayAndBack) {
  const std::vector<std::array<std::string, 3>> cases = {
      {{"/away", "[AW]|bob", "AWAY"},
       {"/AWAY for lunch", "[AW]|bob", "AWAY"},
       {"/STOP", "", "AWAY"},
       {"/PLAY KKRZ", "", "AWAY"},
       {"/ME waves", "RETURNCS|bob; Message|bob: |/ME waves", "Ready to Play"},
       {"/ME waves", "ACTION|bob waves", "Ready to Play"},
       {"/away", "[AW]|bob", "AWAY"},
       {"/?", "RETURNCS|bob; Message|bob: |/?", "Ready to Play"}}};
  EXPECT_EQ(status(), "Ready To Play");
  for (const auto& [text, line, shown] : cases) {
    EXPECT_EQ(sent(text), line) << text;
    EXPECT_EQ(status(), shown) << text;
    EXPECT_EQ(left(), "");
  }
}

TEST_F(Commands, PingFindsWholeEntriesOnly) {
  const std::vector<std::string> nobody = {"User is not logged in or is gurrently in a game."};
  EXPECT_EQ(sent("/PING"), "") << "an empty list has no match";
  EXPECT_EQ(boxTexts(), nobody);
  for (const char* entry : {"ann", "cy[IG]", "dee[AW]"}) room().List1.AddItem(entry);
  const std::vector<std::tuple<std::string, std::string, bool, std::string>> cases = {
      {"/PING ann", "PINGUSER|ann|\245bob", false, ""},
      {"/ping Ann", "", true, ""},
      {"/PING cy", "", true, ""},
      {"/PING cy[IG]", "", false, "/PING cy[IG]"},
      {"/PING dee[AW]", "PINGUSER|dee[AW]|\245bob", false, ""},
      {"/PING ", "", true, ""},
      {"/PING", "", false, "/PING"}};
  room().Label1.Caption = "\245bob";  // a moderator's
  for (const auto& [text, line, box, kept] : cases) {
    EXPECT_EQ(sent(text), line) << text;
    EXPECT_EQ(boxTexts(), box ? nobody : std::vector<std::string>{}) << text;
    EXPECT_EQ(left(), kept) << text;
  }
}

TEST_F(Commands, CompletedNamesAreWhomCommandsMean) {
  for (const char* entry : {"ann[AW]", "bo"}) room().List1.AddItem(entry);
  const auto complete = [&](const std::string& text) {
    room().txtinput.Text = text;
    room().txtinput.SelStart = static_cast<int>(text.size());
    desktop.edge.run([&] { EXPECT_TRUE(room().txtinput.Complete()); });
    return left();
  };
  EXPECT_EQ(sent(complete("/ping a")), "PINGUSER|ann[AW]|bob");
  EXPECT_EQ(sent(complete("/kick a")), "KICK|ann|");
  EXPECT_EQ(sent(complete("/mute b")), "");
  EXPECT_THAT(boxTexts(), ElementsAre("BO has been muted"));
}

TEST_F(Commands, MuteAndUnmute) {
  EXPECT_EQ(sent("/UNMUTE"), "");
  EXPECT_EQ(sent("/mute bob"), "");
  EXPECT_THAT(boxTexts(), ElementsAre("BOB has been muted"));
  EXPECT_EQ(left(), "/mute bob");
  EXPECT_TRUE(desktop.shows<Muted>());
  Muted& muted = form<Muted>();
  click(muted.Command1);
  EXPECT_FALSE(desktop.shows<Muted>());

  sent("/MUTE Ann");
  sent("/MUTE bob");
  EXPECT_THAT(muted.List1.entries(), ElementsAre("BOB", "ANN", "BOB"));
  boxTexts();
  sent("/MUTE");
  sent("/UNMUTE");
  sent("/UNMUTE nobody");
  EXPECT_THAT(boxTexts(), IsEmpty());
  sent("/unmute Bob");
  EXPECT_THAT(boxTexts(), ElementsAre("Bob Has been unmuted.", "Bob Has been unmuted."));
  EXPECT_THAT(muted.List1.entries(), ElementsAre("ANN"));
  EXPECT_EQ(left(), "/unmute Bob");
  EXPECT_TRUE(desktop.shows<Muted>());
}

TEST_F(Commands, WithoutAConnectionTheTextStays) {
  hangUp();
  for (const char* text : {"hello", "/me waves", "/away", "/sound x", "/kick ann"}) {
    desktop.enter(text);
    EXPECT_EQ(left(), text);
    EXPECT_EQ(status(), "Ready To Play");
  }
  room().Label7.Caption = "AWAY";
  desktop.enter("hello");
  EXPECT_EQ(left(), "hello");
  EXPECT_EQ(status(), "Ready to Play");
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Commands, OnlyEnterActsAndEveryChangePutsTheCaretAtTheEnd) {
  auto& box = room().txtinput;
  box.Text = "hello";
  EXPECT_EQ(box.SelStart.get(), 5);
  EXPECT_EQ(box.SelColor.get(), (Color{96, 246, 241}));
  desktop.raise(box.KeyDown, 32, 0);
  EXPECT_EQ(left(), "hello");
  desktop.raise(box.KeyDown, key_code::kEnter, 1);
  EXPECT_EQ(left(), "");
}

}  // namespace
}  // namespace kelvaron::testing
