// Lines cut anywhere on their way: nothing is lost, and no unfinished line is handed out early.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>

#include "tests/native/raw_peer.h"

namespace kelvaron::testing {
namespace {

using std::chrono::steady_clock;

class HoldBack : public ::testing::Test {
 protected:
  PollLoop loop;
  RawListener listener;
  LoggedSocket client{loop};
  RawPeer peer = join(loop, client, listener);

  void runUntilReceived(std::size_t bytes) {
    ASSERT_TRUE(loop.runUntil([&] { return client.received.size() >= bytes; }, kPatience))
        << client.received.size() << " of " << bytes << " bytes";
  }
  /// Lets the socket read what the peer has sent already.
  void turns() {
    for (int turn = 0; turn < 3; ++turn) loop.runOnce(0ms);
  }
};

const std::string kText =
    "TALK \xA5"
    "bob\r\n\nROOM 3\r\nx\n";

TEST_F(HoldBack, EveryCutCompletedInTime) {
  client.socket->HoldBackUnfinishedLine(60s);
  for (std::size_t cut = 0; cut <= kText.size(); ++cut) {
    client.received.clear();
    peer.send(kText.substr(0, cut));
    turns();
    const std::string whole = kText.substr(0, kText.substr(0, cut).rfind('\n') + 1);
    EXPECT_EQ(client.received, whole) << "cut at " << cut;
    peer.send(kText.substr(cut));
    runUntilReceived(kText.size());
    EXPECT_EQ(client.received, kText) << "cut at " << cut;
  }
}

TEST_F(HoldBack, EveryCutCompletedTooLate) {
  constexpr auto kLimit = 12ms;
  client.socket->HoldBackUnfinishedLine(kLimit);
  for (std::size_t cut = 1; cut <= kText.size(); ++cut) {
    client.received.clear();
    const auto sent = steady_clock::now();
    peer.send(kText.substr(0, cut));
    runUntilReceived(cut);
    if (kText[cut - 1] != '\n') {
      EXPECT_GE(steady_clock::now() - sent, kLimit) << cut;
    }
    peer.send(kText.substr(cut));
    runUntilReceived(kText.size());
    EXPECT_EQ(client.received, kText) << "cut at " << cut;
  }
}

TEST_F(HoldBack, TenThousandLinesInRandomChunks) {
  client.socket->HoldBackUnfinishedLine(60s);
  bool wholeLines = true;
  client.socket->onDataArrival = [&] {
    const std::string data = client.socket->GetData();
    wholeLines = wholeLines && data.ends_with('\n');
    client.received += data;
  };
  std::mt19937 random(4711);
  std::string text;
  for (int line = 0; line < 10'000; ++line) {
    text += std::to_string(line) + std::string(random() % 90, 'x') + "\r\n";
  }
  for (std::size_t sent = 0; sent < text.size();) {
    const std::string chunk = text.substr(sent, 1 + random() % 1500);
    peer.send(chunk);
    sent += chunk.size();
    if (random() % 3 != 0) loop.runOnce(0ms);
  }
  runUntilReceived(text.size());
  EXPECT_TRUE(client.received == text);
  EXPECT_TRUE(wholeLines);
}

TEST_F(HoldBack, TailsAgeFromTheirOwnFirstByte) {
  constexpr auto kLimit = 80ms;
  client.socket->HoldBackUnfinishedLine(kLimit);
  peer.send("old tail");
  turns();
  loop.runUntil([] { return false; }, 50ms);
  const auto begun = steady_clock::now();
  peer.send(" ends\nnew tail");
  runUntilReceived(1);
  EXPECT_EQ(client.received, "old tail ends\n");
  runUntilReceived(22);
  EXPECT_GE(steady_clock::now() - begun, kLimit);
}

TEST_F(HoldBack, CompletedWhileTheLoopWasBusy) {
  constexpr auto kLimit = 20ms;
  client.socket->HoldBackUnfinishedLine(kLimit);
  client.reads = false;
  peer.send("RO");
  turns();
  // The rest of the line comes in the turn in which the tail is due, as after a long handler.
  const auto rest = loop.after(0ms, [&] { peer.send("OM\nta"); });
  const auto busyUntil = steady_clock::now() + 2 * kLimit;
  while (steady_clock::now() < busyUntil) {
  }
  loop.runOnce(0ms);
  EXPECT_EQ(client.socket->GetData(), "ROOM\n");
}

TEST_F(HoldBack, EndlessLineIsBounded) {
  client.socket->HoldBackUnfinishedLine(60s);
  const std::string endless(ArrivalBuffer::kLongestTail / 8, 'e');
  for (int part = 0; part < 8; ++part) {
    peer.send(endless);
    turns();
  }
  EXPECT_EQ(client.received, "");
  peer.send("e");
  runUntilReceived(8 * endless.size() + 1);
}

TEST_F(HoldBack, TurnedOffLetsTheTailGo) {
  client.socket->HoldBackUnfinishedLine(60s);
  peer.send("tail");
  turns();
  EXPECT_EQ(client.socket->GetData(), "");
  client.socket->HoldBackUnfinishedLine(0ms);
  runUntilReceived(4);
}

TEST_F(HoldBack, EndOfTheStreamLetsTheTailGoFirst) {
  client.socket->HoldBackUnfinishedLine(60s);
  peer.send("line\ntail");
  turns();
  EXPECT_EQ(client.received, "line\n");
  peer.close();
  ASSERT_TRUE(loop.runUntil([&] { return client.saw("close"); }, kPatience));
  EXPECT_EQ(client.received, "line\ntail");
  EXPECT_EQ(client.log, (std::vector<std::string>{"connect", "data", "data", "close"}));
}

TEST_F(HoldBack, TailIsNotReleasedWhileReadingIsPaused) {
  client.socket->HoldBackUnfinishedLine(20ms);
  client.reads = false;
  // What is unread at the limit ends in the middle of a line; the rest waits with the peer.
  std::string lines;
  while (lines.size() < NativeSocket::kUnreadLimit * 2) lines += "Users\tsomebody else\r\n";
  std::thread sending([&] { peer.send(lines); });
  loop.runUntil([] { return false; }, 300ms);
  client.reads = true;
  client.received += client.socket->GetData();
  EXPECT_EQ(client.received.back(), '\n') << "half a line does not count as arrived";
  runUntilReceived(lines.size());
  sending.join();
  EXPECT_EQ(client.received, lines);
}

TEST_F(HoldBack, WhatWasPutBackComesAgainInFrontOfTheRest) {
  client.reads = false;
  peer.send("one\r\ntwo\r\n");
  ASSERT_TRUE(loop.runUntil([&] { return client.saw("data"); }, kPatience));
  EXPECT_EQ(client.socket->GetData(), "one\r\ntwo\r\n");
  client.reads = true;
  client.socket->PutBack("two\r\n");
  peer.send("three\r\n");
  runUntilReceived(12);
  EXPECT_EQ(client.received, "two\r\nthree\r\n");
}

}  // namespace
}  // namespace kelvaron::testing
