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
  void press() { ann.raise(sender().Btn_Send.Click); }
  /// Starts to send what is more than the system's buffers hold, to a peer that reads nothing.
  void fillTheRoad() {
    reads = false;
    choose("big.wad", big);
    press();
    std::int64_t before = -1;
    // Done when a tenth of a second brings nothing more.
    ASSERT_TRUE(until([&] {
      loop.runUntil([] { return false; }, std::chrono::milliseconds(100));
      return std::exchange(before, sender().FileBar.Value.get()) == sender().FileBar.Value.get() &&
             before > 0;
    }));
  }
  void read() {
    reads = true;
    received = peer->GetData();
  }
  /// What the peer has received when the connection is closed; the next may come.
  std::string sent() {
    EXPECT_TRUE(until([&] { return closed; }));
    peer->Close();
    closed = false;
    return std::exchange(received, {});
  }
  /// The wait that is going on takes too long.
  void timeOut() {
    EXPECT_EQ(sender().waitLimit.Interval.get(), 30'000);
    EXPECT_TRUE(sender().waitLimit.Enabled);
    ann.raise(sender().waitLimit.Tick);
    ASSERT_EQ(ann.boxes.size(), 1U);
    EXPECT_EQ(ann.boxes[0].text, "Timeout");
    EXPECT_FALSE(sender().waitLimit.Enabled);
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
  press();
  EXPECT_EQ(sender().Lbl_Status.Caption.get(), "6 to port: " + sender().Txt_Port.Text.get());
  EXPECT_EQ(sent(), "FILEINFO|12|maps.wad|twelve bytes");
  EXPECT_EQ(sender().Lbl_Status.Caption.get(), "7 to port: " + sender().Txt_Port.Text.get());
  // A name that would break the header is changed.
  choose("a|b\tc.wad", "x");
  press();
  // Chosen while it connects: for the next press.
  choose("later.wad", "other");
  EXPECT_EQ(sent(), "FILEINFO|1|a_b_c.wad|x");
  // A typed path goes out under its own name.
  sender().Txt_File.Text = (ann.folder.path() / "maps.wad").string();
  press();
  EXPECT_EQ(sent(), "FILEINFO|12|maps.wad|twelve bytes");
}

TEST_F(Sender, NothingDuringATransferChangesWhatIsSent) {
  fillTheRoad();
  const std::int64_t value = sender().FileBar.Value;
  choose("next.wad", "x");
  press();
  EXPECT_EQ(sender().FileBar.Value.get(), value);
  std::filesystem::resize_file(ann.folder.path() / "big.wad", big.size() + 5000);
  peer->SendData(randomBytes(1U << 20U));
  read();
  EXPECT_TRUE(sent() == "FILEINFO|25165824|big.wad|" + big);
  EXPECT_EQ(connections, 1);
  EXPECT_THAT(ann.boxes, IsEmpty());
}

TEST_F(Sender, RefusedOrAbsentIsTimeoutWhenTheWaitIsOver) {
  listener->Close();
  choose("maps.wad", "x");
  press();
  loop.runUntil([] { return false; }, std::chrono::milliseconds(100));
  EXPECT_THAT(ann.boxes, IsEmpty()) << "a refusal is not told apart";
  timeOut();
}

TEST_F(Sender, BlockThatIsNotTakenIsTimeoutAndAnotherPressBeginsAnew) {
  fillTheRoad();
  timeOut();
  EXPECT_EQ(peer->State(), SocketState::connected) << "the connection is left alone";
  read();
  choose("b.wad", "second");
  press();
  EXPECT_EQ(sender().FileBar.Value.get(), 0);
  sent();
  press();
  EXPECT_EQ(sent(), "FILEINFO|6|b.wad|second");
}

TEST_F(Sender, LostConnectionEndsWithoutAWordAndTheDisplaysStay) {
  fillTheRoad();
  const std::int64_t before = sender().FileBar.Value;
  peer->Close();
  ASSERT_TRUE(until([&] { return !sender().waitLimit.Enabled; }));
  const std::int64_t value = sender().FileBar.Value;
  EXPECT_GE(value, before) << "a busy system may have taken a little more";
  EXPECT_LT(value, std::ssize(big));
  EXPECT_EQ(sender().Lbl_Complete.Caption.get(), completeCaption(value, std::ssize(big)));
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
  press();
  close();  // connecting
  fillTheRoad();
  read();
  close();  // sending
  choose("a.wad", randomBytes(1U << 20U));
  press();
  ASSERT_TRUE(until([&] { return sender().FileBar.Value == sender().FileBar.Max; }));
  close();  // draining, or just done
  EXPECT_THAT(ann.boxes, IsEmpty());
}

TEST_F(Sender, FileThatShrinksIsToldAndTheConnectionClosed) {
  fillTheRoad();
  choose("next.wad", "x");
  std::filesystem::resize_file(ann.folder.path() / "big.wad", 1000);
  read();
  EXPECT_LT(sent().size(), big.size());
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_THAT(ann.boxes[0].text, HasSubstr("big.wad became shorter"));
}

}  // namespace
}  // namespace kelvaron::testing
