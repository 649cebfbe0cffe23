// The profile: edited, asked for, answered and shown.
#include "peer/profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "session/message_of_the_day.h"
#include "tests/peer/two_desks.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* kMissing =
    "Someone is trying to view your profile But you havent made one. Please create it to avoid "
    "seeing this message";
const std::string kPlain =
    "Ann\r\n4.1\r\nAnna\r\nLee\r\n33\r\nF\r\n123\r\na@b\r\nOslo\r\nOs\r\nNorway\r\nwww\r\nhi\r\n";
const std::string kBobs =
    "PROFILE\tbob\tBETA\tBobby\tRoe\t20\tM\t9\tb@c\tRiga\tRi\tLatvia\thttp\tho\r\n";

class Profiles : public TwoDesks {
 protected:
  Profile& form() { return ann.client->form<Profile>(); }
  void edit() { ann.raise(ann.room().mnuEditProfile.Click); }
  void save() { ann.raise(form().Command2.Click); }
  /// As the frame's close button does.
  void close() {
    ann.edge.run([&] { ann.client->slots.unload(form()); });
  }
  bool loaded() { return ann.client->loadedForm<Profile>() != nullptr; }
  std::string texts() {
    std::string all;
    for (const TextBox* box : form().boxes()) all += box->Text.get() + "|";
    return all;
  }
  std::string file() { return contentOf(ann.folder.path() / "profile.dat"); }
  void setFile(std::string_view content) { writeFile(ann.folder.path() / "profile.dat", content); }
  /// Has the server say it and waits until it was handled.
  void hear(const std::string& lines) {
    annsServer.say(lines + "Announce\tdone\r\n");
    EXPECT_TRUE(until([&] { return !ann.chat().empty(); }));
    ann.room().txtOutput.Content.clear();
  }
  bool forReading() {
    return !form().Command2.Visible &&
           std::ranges::none_of(form().boxes(), [](TextBox* box) { return bool(box->Enabled); });
  }
};

TEST_F(Profiles, EditAndSave) {
  edit();
  EXPECT_TRUE(ann.shows<Profile>());
  EXPECT_EQ(texts(), "|||||||||||||");
  EXPECT_TRUE(form().Command2.Visible);
  EXPECT_FALSE(form().Text2.Enabled);
  EXPECT_TRUE(form().Text1.Enabled && form().Text13.Enabled);
  form().Text1.Text = "Ann";
  form().Text4.Text = "Lee \x80";
  form().Text13.Text = "free text";
  save();
  EXPECT_FALSE(loaded());
  EXPECT_EQ(file(), "Ann\r\n\r\n\r\nLee \x80\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\nfree text\r\n");
  edit();
  EXPECT_EQ(texts(), "Ann|||Lee \x80|||||||||free text|");
  // What the file can't hold is saved as it stands, and told.
  form().Text1.Text = "Ann, the first";
  save();
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_THAT(ann.boxes[0].text, ::testing::HasSubstr("holds a comma"));
  EXPECT_TRUE(file().starts_with("Ann, the first\r\n"));
  edit();
  form().Text1.Text = "Ann";
  save();
  edit();
  form().Text1.Text = "not saved";
  close();
  EXPECT_TRUE(file().starts_with("Ann\r\n"));
}

TEST_F(Profiles, FileIsReadByTheRuleOfFields) {
  setFile("Ann\r\n4.1\r\n\"Anna, B\"\r\nLee, Jr\r\n  7\r\n");
  edit();
  EXPECT_EQ(texts(), "Ann|4.1|Anna, B|Lee|Jr|7||||||||");
}

TEST_F(Profiles, UnwritableFileIsToldAndTheTextStays) {
  std::filesystem::create_directory(ann.folder.path() / "profile.dat");
  edit();
  form().Text1.Text = "Ann";
  save();
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_EQ(ann.boxes[0].style, box_style::kCritical);
  EXPECT_TRUE(ann.shows<Profile>());
  EXPECT_EQ(form().Text1.Text.get(), "Ann");
}

TEST_F(Profiles, AskingNamesTheWholeEntryButLeavesPlayersInPeace) {
  auto& list = ann.room().List1;
  for (const char* entry : {"bob[AW]", "cy[IG]", "d[IG]e"}) list.AddItem(entry);
  for (int index = 0; index < 3; ++index) {
    selectOnly(list, index);
    ann.raise(ann.room().mnuGetProfile.Click);
  }
  ASSERT_TRUE(until([&] { return annsServer.lines.size() == 2; }));
  EXPECT_THAT(annsServer.lines,
              ElementsAre("GETPROFILE2\tbob[AW]\tann", "GETPROFILE2\td[IG]e\tann"));
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_EQ(ann.boxes[0].text,
            "You may not view a profile from a user that is currently in a game. Try again later "
            "when the user returns from his/her game");
  EXPECT_FALSE(loaded());
}

TEST_F(Profiles, Answers) {
  struct Case {
    std::string file;
    std::string answer;
  };
  const Case cases[] = {
      {kPlain, "Anna\tLee\t33\tF\t123\ta@b\tOslo\tOs\tNorway\twww\thi"},
      {"", "\t\t\t\t\t\t\t\t\t\t"},
      {"Ann\r\n4.1\r\nAnna\r\n", "Anna\t\t\t\t\t\t\t\t\t\t"},
      {"Ann\r\n4.1\r\nAn\tna\r\n\"two\r\nlines\"\r\n", "An na\ttwo  lines\t\t\t\t\t\t\t\t\t"},
      {"a\r\nb\r\nx, y\r\n", "x\ty\t\t\t\t\t\t\t\t\t"},
  };
  ann.room().Label1.Caption =
      "\xA5"
      "ann";
  for (const Case& each : cases) {
    setFile(each.file);
    annsServer.lines.clear();
    annsServer.say(
        "GETPROFILE\tcy\r\nGETPROFILE2\t\xA5"
        "bob\r\n");
    ASSERT_TRUE(until([&] { return annsServer.lines.size() == 2; }));
    EXPECT_EQ(annsServer.lines[0],
              "PROFILE\tcy\t\xA5"
              "ann\tBETA\t" +
                  each.answer);
    EXPECT_EQ(annsServer.lines[1],
              "PROFILE2\t\xA5"
              "bob\t\xA5"
              "ann\tBETA\t" +
                  each.answer);
  }
  EXPECT_FALSE(loaded());
  EXPECT_THAT(ann.boxes, IsEmpty());
}

TEST_F(Profiles, WhoHasNoneIsToldAndTheRestOfTheReadIsLost) {
  annsServer.say("GETPROFILE2\tbob\r\nAnnounce\tlost\r\n");
  ASSERT_TRUE(until([&] { return !ann.boxes.empty(); }));
  EXPECT_EQ(ann.boxes[0].text, kMissing);
  EXPECT_EQ(ann.chat(), "");
  // Where a room line has set the rule that goes on, nothing is answered either.
  annsServer.say("Message\tcy: \thi\r\nGETPROFILE2\tbob\r\nAnnounce\tkept\r\n");
  ASSERT_TRUE(until([&] { return ann.chat() == "cy: hi\nkept\n"; }));
  EXPECT_THAT(annsServer.lines, IsEmpty());
  EXPECT_EQ(ann.boxes.size(), 1U);
  // Whoever asks again and again is told of once a minute.
  auto time = std::chrono::steady_clock::now();
  ann.client->now = [&time] { return time; };
  for (const auto& [passed, boxes] : {std::pair(59, 1U), std::pair(2, 2U), std::pair(59, 2U)}) {
    time += std::chrono::seconds(passed);
    annsServer.say("GETPROFILE2\tbob\r\n");
    annsServer.say("PLAYSOUND\tmark\r\n");
    ASSERT_TRUE(until([&] { return std::erase(ann.sounds, "mark") > 0; }));
    EXPECT_EQ(ann.boxes.size(), boxes);
  }
}

TEST_F(Profiles, ShowsSomebodyElsesWithoutEditing) {
  setFile(kPlain);
  hear(kBobs);
  ASSERT_TRUE(ann.shows<Profile>());
  EXPECT_EQ(texts(), "bob|BETA|Bobby|Roe|20|M|9|b@c|Riga|Ri|Latvia|http|ho|");
  EXPECT_TRUE(forReading());
  EXPECT_TRUE(form().Command1.Visible && form().Command1.Enabled);
  ann.raise(form().Command1.Click);
  close();
  edit();
  EXPECT_EQ(form().Text1.Text.get(), "Ann");
  EXPECT_TRUE(form().Text1.Enabled);
}

TEST_F(Profiles, EditOverSomebodyElsesBeginsWithTheOwnFile) {
  setFile(kPlain);
  hear(kBobs);
  edit();
  EXPECT_TRUE(ann.shows<Profile>());
  EXPECT_EQ(form().Text3.Text.get(), "Anna");
  save();
  EXPECT_EQ(file(), kPlain);
}

TEST_F(Profiles, ArrivalWhileEditingWaitsAndTheLastOneCounts) {
  setFile(kPlain);
  edit();
  form().Text3.Text = "typed";
  hear("PROFILE\tcy\tBETA\t1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\r\n");
  hear(kBobs);
  hear("Message\tx: \ty\r\nPROFILE\tdee\tshort\r\nMessage\tx: \ty\r\n");
  EXPECT_EQ(form().Text3.Text.get(), "typed");
  EXPECT_TRUE(form().Command2.Visible);
  save();
  ASSERT_TRUE(ann.shows<Profile>());
  EXPECT_EQ(form().Text1.Text.get(), "dee");
  EXPECT_TRUE(forReading());
  EXPECT_NE(file().find("typed"), std::string::npos);
  close();
  EXPECT_FALSE(loaded()) << "shown once";
  edit();
  hear(kBobs);
  close();
  ASSERT_TRUE(ann.shows<Profile>());
  EXPECT_EQ(form().Text1.Text.get(), "bob");
  EXPECT_TRUE(forReading());
}

TEST_F(Profiles, ShortLineFillsButIsNotShownNorSaved) {
  setFile(kPlain);
  annsServer.say("PROFILE\tbob\tBETA\tBobby\r\n");
  ASSERT_TRUE(until([&] { return loaded() && form().Text3.Text.get() == "Bobby"; }));
  EXPECT_FALSE(ann.shows<Profile>());
  edit();
  EXPECT_EQ(form().Text3.Text.get(), "Anna");
  annsServer.say("PROFILE\tbob\tBETA\tBobby\r\n");
  hear("");
  save();
  EXPECT_FALSE(loaded());
  EXPECT_EQ(file(), kPlain);
}

TEST_F(Profiles, MessageOfTheDayHasTheFormReady) {
  setFile(kPlain);
  hear("MOTD\twelcome\r\n");
  EXPECT_TRUE(ann.shows<Form5>());
  EXPECT_TRUE(loaded());
  EXPECT_FALSE(ann.shows<Profile>());
}

}  // namespace
}  // namespace kelvaron::testing
