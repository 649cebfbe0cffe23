// The sending side against listeners that are slow, absent or gone.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "peer/transfer.h"
#include "tests/peer/two_desks.h"

namespace kelvaron::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Sender : public TwoDesks {
 protected:
  void SetUp() override {
    TwoDesks::SetUp();
    listener = sockets.makeSocket();
    peer = sockets.makeSocket();
    listener->onConnectionRequest = [this](int id) {
      if (peer->State() != SocketState::closed) return;
      peer->Accept(id);
      ++connections;
    };
    peer->onDataArrival = [this] {
      if (reads) received += peer->GetData();
    };
    peer->onClose = [this] { closed = true; };
    listener->Listen(0);
    sender().Txt_Port.Text = std::to_string(listener->LocalPort());
  }
  std::string status(int state) {
    return std::to_string(state) + " to port: " + sender().Txt_Port.Text.get();
  }
  /// Starts to send what is more than the system's buffers hold, to a peer that reads nothing.
  void fillTheRoad() {
    reads = false;
    choose("big.wad", big);
    ann.raise(sender().Btn_Send.Click);
    std::int64_t before = -1;
    // Done when a tenth of a second brings nothing more.
    ASSERT_TRUE(until([&] {
      loop.runUntil([] { return false; }, std::chrono::milliseconds(100));
      return std::exchange(before, sender().FileBar.Value.get()) == sender().FileBar.Value.get() &&
             before > 0;
    }));
  }

  static inline const std::string big = randomBytes(24U << 20U);
  NativeSocketPort sockets{loop};
  std::unique_ptr<Socket> listener;
  std::unique_ptr<Socket> peer;
  std::string received;
  bool reads = true;
  bool closed = false;
  int connections = 0;
};

TEST_F(Sender, StreamIsTheHeaderAndTheBytes) {
  choose("maps.wad", "twelve bytes");
  ann.raise(sender().Btn_Send.Click);
  EXPECT_EQ(sender().Lbl_Status.Caption.get(), status(6));
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(received, "FILEINFO|12|maps.wad|twelve bytes");
  EXPECT_EQ(sender().Lbl_Status.Caption.get(), status(7));
}

TEST_F(Sender, NameThatWouldBreakTheHeaderIsChanged) {
  choose("a|b\tc.wad", "x");
  ann.raise(sender().Btn_Send.Click);
  // Chosen while it connects: for the next press.
  choose("later.wad", "other");
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(received, "FILEINFO|1|a_b_c.wad|x");
}

TEST_F(Sender, TypedPathGoesOutUnderItsOwnName) {
  choose("chosen.wad", "x");
  writeFile(ann.folder.path() / "typed.wad", "yy");
  sender().Txt_File.Text = (ann.folder.path() / "typed.wad").string();
  ann.raise(sender().Btn_Send.Click);
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(received, "FILEINFO|2|typed.wad|yy");
}

TEST_F(Sender, SecondPressDuringATransferDoesNothing) {
  fillTheRoad();
  const std::int64_t sent = sender().FileBar.Value;
  // What is chosen meanwhile is for the next press.
  choose("next.wad", "x");
  ann.raise(sender().Btn_Send.Click);
  EXPECT_EQ(sender().FileBar.Value.get(), sent);
  reads = true;
  received = peer->GetData();
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(connections, 1);
  EXPECT_EQ(received.size(), std::string("FILEINFO|25165824|big.wad|").size() + big.size());
}

TEST_F(Sender, RefusedOrAbsentIsTimeoutWhenTheWaitIsOver) {
  listener->Close();
  choose("maps.wad", "x");
  ann.raise(sender().Btn_Send.Click);
  loop.runUntil([] { return false; }, std::chrono::milliseconds(100));
  EXPECT_THAT(ann.boxes, IsEmpty()) << "a refusal is not told apart";
  EXPECT_EQ(sender().waitLimit.Interval.get(), 30'000);
  EXPECT_TRUE(sender().waitLimit.Enabled);
  ann.raise(sender().waitLimit.Tick);
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_EQ(ann.boxes[0].text, "Timeout");
  EXPECT_FALSE(sender().waitLimit.Enabled);
}

TEST_F(Sender, BlockThatIsNotTakenIsTimeoutAndAnotherPressBeginsAnew) {
  fillTheRoad();
  EXPECT_TRUE(sender().waitLimit.Enabled);
  ann.raise(sender().waitLimit.Tick);
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_EQ(ann.boxes[0].text, "Timeout");
  EXPECT_EQ(peer->State(), SocketState::connected) << "the connection is left alone";
  reads = true;
  received = peer->GetData();
  choose("b.wad", "second");
  ann.raise(sender().Btn_Send.Click);
  ASSERT_TRUE(until([&] { return closed; }));
  peer->Close();
  closed = false;
  received.clear();
  ann.raise(sender().Btn_Send.Click);
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(received, "FILEINFO|6|b.wad|second");
}

TEST_F(Sender, LostConnectionEndsWithoutAWordAndTheDisplaysStay) {
  fillTheRoad();
  const std::int64_t sent = sender().FileBar.Value;
  const std::string complete = sender().Lbl_Complete.Caption;
  peer->Close();
  ASSERT_TRUE(until([&] { return !sender().waitLimit.Enabled; }));
  EXPECT_EQ(sender().FileBar.Value.get(), sent);
  EXPECT_EQ(sender().Lbl_Complete.Caption.get(), complete);
  EXPECT_THAT(ann.boxes, IsEmpty());
}

TEST_F(Sender, ClosedFormEndsTheTransferFromAnyOfItsWaits) {
  const auto close = [&] {
    ann.raise(sender().Command1.Click);
    EXPECT_EQ(ann.client->loadedForm<Frm_Server>(), nullptr);
    ASSERT_TRUE(until([&] { return closed || peer->State() == SocketState::closed; }));
    peer->Close();
    closed = false;
    sender().Txt_Port.Text = std::to_string(listener->LocalPort());
  };
  choose("a.wad", "x");
  ann.raise(sender().Btn_Send.Click);
  close();  // connecting
  fillTheRoad();
  reads = true;
  received = peer->GetData();
  close();  // sending
  choose("a.wad", randomBytes(1U << 20U));
  ann.raise(sender().Btn_Send.Click);
  ASSERT_TRUE(until([&] { return sender().FileBar.Value == sender().FileBar.Max; }));
  close();  // draining, or just done
  EXPECT_THAT(ann.boxes, IsEmpty());
}

TEST_F(Sender, FileThatShrinksIsToldAndTheConnectionClosed) {
  fillTheRoad();
  choose("next.wad", "x");
  std::filesystem::resize_file(ann.folder.path() / "big.wad", 1000);
  reads = true;
  received = peer->GetData();
  ASSERT_TRUE(until([&] { return closed; }));
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_THAT(ann.boxes[0].text, HasSubstr("big.wad became shorter"));
  EXPECT_LT(received.size(), big.size());
}

TEST_F(Sender, FileThatGrowsIsSentAsAnnounced) {
  fillTheRoad();
  std::filesystem::resize_file(ann.folder.path() / "big.wad", big.size() + 5000);
  reads = true;
  received = peer->GetData();
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(received.size(), std::string("FILEINFO|25165824|big.wad|").size() + big.size());
  EXPECT_THAT(ann.boxes, IsEmpty());
}

TEST_F(Sender, WhatThePeerSaysIsDropped) {
  fillTheRoad();
  peer->SendData(randomBytes(1U << 20U));
  reads = true;
  received = peer->GetData();
  ASSERT_TRUE(until([&] { return closed; }));
  EXPECT_EQ(received.substr(received.size() - 100), big.substr(big.size() - 100));
}

}  // namespace
}  // namespace kelvaron::testing
