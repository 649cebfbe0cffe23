// The profile: edited, asked for, answered and shown.
#include "peer/profile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* kMissing =
    "Someone is trying to view your profile But you havent made one. Please create it to avoid "
    "seeing this message";
const std::string kOwn =
    "Bob\r\n4.1\r\nBobby\r\nLee\r\n33\r\nM\r\n123\r\na@b\r\nOslo\r\nOs\r\nNorway\r\nwww\r\nhi\r\n";
const std::string kAnns =
    "PROFILE\tann\tBETA\tAnna\tRoe\t20\tF\t9\tb@c\tRiga\tRi\tLatvia\thttp\tho\r\n";

class Profiles : public ClientTest {
 protected:
  Profile& form() { return ClientTest::form<Profile>(); }
  void edit() { desktop.raise(room().mnuEditProfile.Click); }
  void save() { click(form().Command2); }
  /// As the frame's close button does.
  void close() {
    desktop.edge.run([&] { desktop.client->slots.unload(form()); });
  }
  bool loaded() { return desktop.client->loadedForm<Profile>() != nullptr; }
  bool shown() { return desktop.shows<Profile>(); }
  std::string texts() {
    std::string all;
    for (const TextBox* box : form().boxes()) all += box->Text.get() + "|";
    return all;
  }
  std::string file() { return desktop.files.read("profile.dat"); }
  void setFile(const std::string& content) { desktop.files.replace("profile.dat", content); }
  bool forReading() {
    return !form().Command2.Visible &&
           std::ranges::none_of(form().boxes(), [](TextBox* box) { return bool(box->Enabled); });
  }
};

TEST_F(Profiles, EditAndSave) {
  // The message of the day has the form ready.
  arrive("MOTD\twelcome\r\n");
  EXPECT_TRUE(loaded() && !shown());
  edit();
  EXPECT_TRUE(shown());
  EXPECT_EQ(texts(), "|||||||||||||");
  EXPECT_TRUE(form().Command2.Visible);
  EXPECT_FALSE(form().Text2.Enabled);
  EXPECT_TRUE(form().Text1.Enabled && form().Text13.Enabled);
  form().Text1.Text = "Bob";
  form().Text4.Text = "Lee \x80";
  form().Text13.Text = " free text";
  save();
  EXPECT_FALSE(loaded());
  EXPECT_EQ(file(), "Bob\r\n\r\n\r\nLee \x80\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n\r\n free text\r\n");
  EXPECT_THAT(desktop.boxes, IsEmpty());
  edit();
  EXPECT_EQ(texts(), "Bob|||Lee \x80|||||||||free text|");
  // What the file can't hold is saved as it stands, and told.
  form().Text1.Text = "Bob, the first";
  save();
  EXPECT_THAT(boxTexts(), ElementsAre(HasSubstr("holds a comma")));
  EXPECT_THAT(file(), StartsWith("Bob, the first\r\n"));
  edit();
  form().Text1.Text = "not saved";
  close();
  EXPECT_THAT(file(), StartsWith("Bob, the first\r\n"));
}

TEST_F(Profiles, UnwritableFileIsToldAndTheTextStays) {
  std::filesystem::create_directory(desktop.folder.path() / "profile.dat");
  edit();
  form().Text1.Text = "Bob";
  save();
  ASSERT_EQ(desktop.boxes.size(), 1U);
  EXPECT_EQ(desktop.boxes[0].style, box_style::kCritical);
  EXPECT_TRUE(shown());
  EXPECT_EQ(form().Text1.Text.get(), "Bob");
}

TEST_F(Profiles, AskingNamesTheWholeEntryButLeavesPlayersInPeace) {
  for (const char* entry : {"ann[AW]", "cy[IG]", "d[IG]e"}) room().List1.AddItem(entry);
  for (int index = 0; index < 3; ++index) {
    selectOnly(room().List1, index);
    desktop.raise(room().mnuGetProfile.Click);
  }
  EXPECT_THAT(sent(), ElementsAre("GETPROFILE2\tann[AW]\tbob", "GETPROFILE2\td[IG]e\tbob"));
  EXPECT_THAT(boxTexts(),
              ElementsAre("You may not view a profile from a user that is currently in a game. Try "
                          "again later when the user returns from his/her game"));
  EXPECT_FALSE(loaded());
}

TEST_F(Profiles, Answers) {
  const std::pair<std::string, std::string> cases[] = {
      {kOwn, "Bobby\tLee\t33\tM\t123\ta@b\tOslo\tOs\tNorway\twww\thi"},
      {"", "\t\t\t\t\t\t\t\t\t\t"},
      {"Bob\r\n4.1\r\nBo\tb\r\n\"two\r\nlines\"\r\n", "Bo b\ttwo  lines\t\t\t\t\t\t\t\t\t"},
      {"a\r\nb\r\nx, y\r\n", "x\ty\t\t\t\t\t\t\t\t\t"},
  };
  const std::string marked = std::string("\xA5") + "bob";
  const std::string front = marked + "\tBETA\t";
  room().Label1.Caption = marked;
  for (const auto& [content, answer] : cases) {
    setFile(content);
    arrive("GETPROFILE\tcy\r\nGETPROFILE2\t\xA5 ann\r\n");
    const std::string rest = front + answer;
    EXPECT_THAT(sent(), ElementsAre("PROFILE\tcy\t" + rest, "PROFILE2\t\xA5 ann\t" + rest));
  }
  EXPECT_FALSE(loaded());
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Profiles, WhoHasNoneIsToldAndTheRestOfTheReadIsLost) {
  arrive("GETPROFILE2\tann\r\nAnnounce\tlost\r\n");
  EXPECT_THAT(boxTexts(), ElementsAre(kMissing));
  EXPECT_EQ(desktop.chat(), "");
  // Where a room line has set the rule that goes on, nothing is answered either.
  arrive("Message\tcy: \thi\r\nGETPROFILE2\tann\r\nAnnounce\tkept\r\n");
  EXPECT_EQ(desktop.chat(), "cy: hi\nkept\n");
  EXPECT_THAT(boxTexts(), IsEmpty());
  // Whoever asks again and again is told of once a minute.
  auto time = std::chrono::steady_clock::now();
  desktop.client->now = [&time] { return time; };
  for (const auto& [passed, boxes] : {std::pair(59, 0U), std::pair(2, 1U), std::pair(59, 0U)}) {
    time += std::chrono::seconds(passed);
    arrive("GETPROFILE2\tann\r\n");
    EXPECT_EQ(boxTexts().size(), boxes);
  }
  EXPECT_THAT(sent(), IsEmpty());
}

TEST_F(Profiles, ShowsSomebodyElsesWithoutEditingAndEditBeginsWithTheOwnFile) {
  setFile(kOwn);
  arrive(kAnns);
  ASSERT_TRUE(shown());
  EXPECT_EQ(texts(), "ann|BETA|Anna|Roe|20|F|9|b@c|Riga|Ri|Latvia|http|ho|");
  EXPECT_TRUE(forReading());
  EXPECT_TRUE(form().Command1.Visible && form().Command1.Enabled);
  click(form().Command1);
  edit();
  EXPECT_TRUE(shown());
  EXPECT_EQ(form().Text3.Text.get(), "Bobby");
  EXPECT_TRUE(form().Text1.Enabled);
  save();
  EXPECT_EQ(file(), kOwn);
}

TEST_F(Profiles, ArrivalWhileEditingWaitsAndTheLastOneCounts) {
  setFile(kOwn);
  edit();
  form().Text3.Text = "typed";
  arrive(kAnns);
  arrive("Message\tx: \ty\r\nPROFILE\tdee\tshort\r\nMessage\tx: \ty\r\n");
  EXPECT_EQ(form().Text3.Text.get(), "typed");
  EXPECT_TRUE(form().Command2.Visible);
  save();
  ASSERT_TRUE(shown());
  EXPECT_EQ(texts(), "dee|short||||||||||||");
  EXPECT_TRUE(forReading());
  EXPECT_THAT(file(), HasSubstr("typed"));
  close();
  EXPECT_FALSE(loaded()) << "shown once";
  edit();
  arrive(kAnns);
  close();
  ASSERT_TRUE(shown());
  EXPECT_EQ(form().Text1.Text.get(), "ann");
  EXPECT_TRUE(forReading());
  edit();
  EXPECT_EQ(form().Text1.Text.get(), "Bob");
}

TEST_F(Profiles, WhatIsReadStaysUntilTheUserAsksForAnother) {
  const std::string cys = "PROFILE\tcy\tBETA\t\t\t\t\t\t\t\t\t\t\t\r\n";
  const auto whose = [&] { return form().Text1.Text.get(); };
  arrive(kAnns);
  arrive(cys);
  EXPECT_EQ(whose(), "ann");
  // What waits doesn't come in the way of one's own.
  setFile(kOwn);
  edit();
  EXPECT_EQ(whose(), "Bob");
  save();
  EXPECT_EQ(whose(), "cy");
  room().List1.AddItem("ann[AW]");
  selectOnly(room().List1, 0);
  desktop.raise(room().mnuGetProfile.Click);
  arrive(kAnns);
  EXPECT_EQ(whose(), "ann");
  close();
  EXPECT_FALSE(loaded());
}

TEST_F(Profiles, ShortLineFillsButIsNotShownNorSaved) {
  setFile(kOwn);
  arrive("PROFILE\tann\tBETA\tAnna\r\n");
  EXPECT_EQ(form().Text3.Text.get(), "Anna");
  EXPECT_FALSE(shown());
  edit();
  EXPECT_EQ(form().Text3.Text.get(), "Bobby");
  arrive("PROFILE\tann\tBETA\tAnna\r\n");
  save();
  EXPECT_FALSE(loaded());
  EXPECT_EQ(file(), kOwn);
}

}  // namespace
}  // namespace kelvaron::testing
