// What the room tells its user beside the chat.
#include "chat/hints.h"

#include <gmock/gmock.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

class HintsTest : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    // None of the first minute's.
    room().hints.drop();
  }
  std::string shown() { return room().txtOutput.Hint_.get().text; }
  void select(const std::string& entry) {
    room().List1.Clear();
    room().List1.AddItem(entry);
    selectOnly(room().List1, 0);
  }
  /// The clock of questions, after so many seconds: what shows then.
  std::string after(int seconds) {
    time_ += std::chrono::seconds(seconds);
    desktop.client->now = [this] { return time_; };
    if (room().AnswerClock.Enabled) desktop.raise(room().AnswerClock.Tick);
    std::string told = shown();
    room().hints.passed();
    return told;
  }

 private:
  std::chrono::steady_clock::time_point time_ = std::chrono::steady_clock::now();
};

TEST_F(HintsTest, TheLatestThatPassesShowsInFrontOfTheOneThatStands) {
  int followed = 0;
  Hints& hints = room().hints;
  hints.stand({.text = "stands", .link = "on"}, [&] { ++followed; });
  hints.pass("one");
  hints.pass("two");
  EXPECT_EQ(room().txtOutput.Hint_.get(), (Hint{.text = "two", .link = ""}));
  desktop.raise(room().HintClock.Tick);
  EXPECT_EQ(room().txtOutput.Hint_.get(), (Hint{.text = "stands", .link = "on"}));
  EXPECT_FALSE(room().HintClock.Enabled);
  hints.pass("three");
  desktop.raise(room().txtOutput.HintClosed);
  EXPECT_EQ(shown(), "stands");
  desktop.raise(room().txtOutput.HintFollowed);
  EXPECT_EQ(shown(), "");
  EXPECT_EQ(followed, 1);
  hints.stand({.text = "again", .link = "on"}, [&] { ++followed; });
  desktop.raise(room().txtOutput.HintClosed);
  EXPECT_EQ(shown(), "");
  EXPECT_EQ(followed, 1);
  EXPECT_EQ(desktop.chat(), "");
}

TEST_F(HintsTest, WhoDoesNotAnswerIsNamedAfterTenSeconds) {
  // What is asked, of whom, and the answer that comes.
  const struct {
    MenuItem frmMain::*asks;
    const char* entry;
    const char* answer;
    const char* told;
  } cases[] = {
      {&frmMain::mnuPing, "ann[AW]", "", "ann hasn't answered the ping."},
      {&frmMain::mnuPing, "ann", "THEPING\t10.1.2.3\tann\r\n", ""},
      {&frmMain::mnuPing, "ann", "THEPING\t10.1.2.3\tcy\r\n", "ann hasn't answered the ping."},
      {&frmMain::mnuGetProfile, "cy", "", "cy hasn't answered with a profile."},
      {&frmMain::mnuSendFile, "cy", "", "cy hasn't answered about the file."},
      {&frmMain::mnuSendFile, "dee", "RETURNFT\t10.1.2.3\r\n", ""},
  };
  after(0);
  for (const auto& [asks, entry, answer, told] : cases) {
    SCOPED_TRACE(std::string(entry) + answer);
    select(entry);
    desktop.raise((room().*asks).Click);
    arrive(answer);
    EXPECT_EQ(after(9), "");
    EXPECT_EQ(after(1), told);
    EXPECT_EQ(after(20), "") << "once";
    EXPECT_FALSE(room().AnswerClock.Enabled);
    after(60);
  }
}

TEST_F(HintsTest, OfSeveralWhoseAddressMayBeMissingAllAreNamed) {
  after(0);
  for (const char* entry : {"ann", "bo", "ann"}) {
    select(entry);
    desktop.raise(room().mnuSendFile.Click);
  }
  desktop.answers = {true};
  arrive("RETURNFT\t10.1.2.3\r\n");
  EXPECT_EQ(after(10), "ann or bo hasn't answered about the file.");
}

}  // namespace
}  // namespace kelvaron::testing
