// The frame of an arrival: cutting, the keyword compare, and the two fault rules.
#include <gmock/gmock.h>

#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Dispatch : public ClientTest {
 protected:
  std::vector<std::string> users() { return desktop.room().List1.entries(); }
};

TEST_F(Dispatch, ListsAfterArrivals) {
  // ";" stands for a line's end, "|" for TAB, "/" for the end of a read.
  const std::vector<std::pair<std::string, std::vector<std::string>>> cases = {
      {"Userscl;Users|ann;Users|bob;", {"ann", "bob"}},
      // Cut inside a line: only that line is lost.
      {"Userscl;Use/rs|ann;Users|bob;", {"bob"}},
      {"Userscl;/Users|ann", {}},
      {"Userscl;FUTURE|x;Users|ann;", {"ann"}},
      {"Userscl;USERS|ann;users|ann;", {}},
      // A line without its field ends the read, but not behind a room line; an empty line likewise.
      {"Userscl;Users;Users|ann;", {}},
      {"Userscl;Message|ann: |hi;Users;Users|ann;", {"ann"}},
      {"Userscl;Message|ann: |hi;/Users;Users|ann;", {}},
      {"Userscl;;Users|ann;", {}},
      {"Userscl;Message|ann: |hi;;Users|ann;", {"ann"}},
      {"Userscl;Users|;", {""}},
      {"Userscl;Users|ann;Users|ann;", {"ann", "ann"}},
      {"Userscl;Users|bob;Users|Ann;Users|cy[IG];Users|AL;", {"AL", "Ann", "bob", "cy[IG]"}},
      {std::string("Userscl;Users|a\0b\xFF;", 19), {std::string("a\0b\xFF", 4)}}};
  for (const auto& [arrivals, expected] : cases) {
    std::string bytes;
    for (const char each : arrivals + "/") {
      if (each != '/') bytes += each == ';' ? "\r\n" : std::string(1, each == '|' ? '\t' : each);
      if (each == '/') arrive(std::exchange(bytes, {}));
    }
    EXPECT_EQ(users(), expected) << arrivals;
    EXPECT_THAT(desktop.boxes, IsEmpty()) << arrivals;
  }
}

TEST_F(Dispatch, LinesBehindAnOpenBoxKeepTheirOrder) {
  desktop.whileBoxIsOpen = [&](const Box&) {
    server.say("Announce\tsecond\r\n");
    loop.runUntil([] { return false; }, std::chrono::milliseconds(100));
  };
  server.say("MSGBOX\tlook\r\nAnnounce\tfirst\r\n");
  EXPECT_TRUE(desktop.until([&] { return desktop.sounds.size() == 2; }));
  EXPECT_EQ(desktop.chat(), "first\nsecond\n");
}

TEST_F(Dispatch, RowsOfBoxesCanBeLeft) {
  std::string burst;
  for (int i = 0; i < 10'000; ++i) burst += "MSGBOX\tagain\r\nDOUBLE\r\nbanned\r\n";
  desktop.leavesBoxes = true;
  server.say(burst + "Announce\tnever seen\r\n");
  ASSERT_TRUE(desktop.until([&] { return offline(); }));
  loop.runUntil([] { return false; }, std::chrono::milliseconds(50));
  ASSERT_EQ(desktop.boxes.size(), 4U);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(desktop.boxes[i].offersDisconnect, i == 3);
    EXPECT_TRUE(desktop.boxes[i].unasked);
  }
  EXPECT_EQ(desktop.chat(), "");
}

TEST_F(Dispatch, BoxesAreInARowWhenTheyFollowSoon) {
  auto time = std::chrono::steady_clock::now();
  desktop.client->now = [&time] { return time; };
  // However long the user reads; and no more once there was some time between two.
  desktop.whileBoxIsOpen = [&](const Box&) { time += std::chrono::minutes(1); };
  server.say("MSGBOX\t1\r\nMSGBOX\t2\r\nMSGBOX\t3\r\nMSGBOX\t4\r\n");
  ASSERT_TRUE(desktop.until([&] { return desktop.boxes.size() == 4; }));
  EXPECT_TRUE(desktop.boxes[3].offersDisconnect);
  time += std::chrono::seconds(6);
  server.say("MSGBOX\t5\r\n");
  ASSERT_TRUE(desktop.until([&] { return desktop.boxes.size() == 5; }));
  EXPECT_FALSE(desktop.boxes[4].offersDisconnect);
}

TEST_F(Dispatch, ProgramsThatFailBehindABoxAreCountedInTheNext) {
  const auto& trouble = desktop.client->ports.processes.onTrouble;
  desktop.whileBoxIsOpen = [&](const Box&) {
    desktop.whileBoxIsOpen = nullptr;
    for (int i = 0; i < 3; ++i) trouble("another");
  };
  trouble("first");
  EXPECT_THAT(boxTexts(), ElementsAre("first", "Meanwhile 3 more programs could not be started."));
}

TEST_F(Dispatch, SlowLinesAreHandledInSeveralTurns) {
  std::chrono::milliseconds passed{0};
  desktop.client->now = [&] { return std::chrono::steady_clock::time_point(passed); };
  std::vector<std::string> order;
  std::unique_ptr<LoopWatch> key;
  desktop.whileBoxIsOpen = [&](const Box& box) {
    order.push_back(box.text);
    passed += std::chrono::milliseconds(30);
    if (box.text == "2") {
      key = loop.after(std::chrono::milliseconds(0), [&] { order.emplace_back("key"); });
    }
  };
  server.say("MSGBOX\t1\r\nMSGBOX\t2\r\nMSGBOX\t3\r\n");
  ASSERT_TRUE(desktop.until([&] { return order.size() == 4; }));
  EXPECT_THAT(order, ElementsAre("1", "2", "key", "3"));
}

// What came in the same read is under the same rule, in whichever turn it is handled; what has come
// since begins with its own.
TEST_F(Dispatch, RuleInForceOutlastsASlowTurn) {
  std::chrono::milliseconds passed{0};
  desktop.client->now = [&] { return std::chrono::steady_clock::time_point(passed); };
  desktop.whileBoxIsOpen = [&](const Box& box) {
    passed += std::chrono::milliseconds(30);
    if (box.text == "slow") server.say("Users\r\nUsers\tcy\r\nMSGBOX\tunreached\r\n");
  };
  server.say("Userscl\r\nMessage\tann: \thi\r\nMSGBOX\tslow\r\nUsers\r\nUsers\tann\r\n");
  ASSERT_TRUE(desktop.until([&] { return users().size() == 1; }));
  server.say("Users\tdan\r\n");
  ASSERT_TRUE(desktop.until([&] { return users().size() == 2; }));
  EXPECT_THAT(users(), ElementsAre("ann", "dan"));
  EXPECT_EQ(desktop.boxes.size(), 1U);
}

TEST_F(Dispatch, TenThousandUsersInOneBurstLoseNone) {
  std::string burst = "Userscl\r\n";
  for (int i = 0; i < 10'000; ++i) burst += "Users\tuser" + std::to_string(i) + "\r\n";
  // The bytes come in pieces that never end where a line ends, in turns of their own.
  for (std::size_t at = 0; at < burst.size(); at += 1013) {
    server.say(std::string_view(burst).substr(at, 1013));
    loop.runOnce(std::chrono::milliseconds(0));
  }
  EXPECT_TRUE(desktop.until([&] { return users().size() == 10'000; })) << users().size();
}

}  // namespace
}  // namespace kelvaron::testing
