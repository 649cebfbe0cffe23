// Sending block by block within one turn of the loop.
#include <gtest/gtest.h>

#include "tests/native/raw_peer.h"

namespace kelvaron::testing {
namespace {

class SendNow : public ::testing::Test {
 protected:
  PollLoop loop;
  RawListener listener;
  LoggedSocket client{loop};
  RawPeer peer = join(loop, client, listener);
  Socket& socket = *client.socket;
};

TEST_F(SendNow, WhatTheSystemTakesWholeRaisesNothing) {
  client.log.clear();
  for (int block = 0; block < 10; ++block) EXPECT_TRUE(socket.SendNow("block "));
  EXPECT_EQ(socket.BytesQueued(), 0U);
  loop.runUntil([] { return false; }, std::chrono::milliseconds(30));
  EXPECT_FALSE(client.saw("sent"));
  socket.Close();
  EXPECT_EQ(peer.receiveAll().size(), 60U);
}

TEST_F(SendNow, WhatTheSystemDoesNotTakeIsReportedWhenItIsGone) {
  client.log.clear();
  const std::string block(2048, 'x');
  std::size_t given = 0;
  do {
    given += block.size();
  } while (socket.SendNow(block) && given < (std::size_t{64} << 20U));
  ASSERT_GT(socket.BytesQueued(), 0U);
  EXPECT_FALSE(socket.SendNow("more"));
  given += 4;
  EXPECT_FALSE(client.saw("sent"));
  std::size_t got = 0;
  while (got < given) {
    got += peer.receive().size();
    loop.runOnce(std::chrono::milliseconds(0));
  }
  EXPECT_EQ(got, given);
  EXPECT_TRUE(loop.runUntil([&] { return client.saw("sent"); }, kPatience));
  EXPECT_TRUE(socket.SendNow("again"));
}

TEST_F(SendNow, KeepsTheOrderWithSendData) {
  socket.SendData("a");
  socket.SendData("b");
  EXPECT_TRUE(socket.SendNow("c"));
  socket.SendData("d");
  EXPECT_TRUE(loop.runUntil([&] { return client.saw("sent"); }, kPatience));
  socket.Close();
  EXPECT_EQ(peer.receiveAll(), "abcd");
}

TEST_F(SendNow, LostConnectionIsRaisedAsAlways) {
  peer.reset();
  loop.runUntil([] { return false; }, std::chrono::milliseconds(1));
  EXPECT_TRUE(loop.runUntil(
      [&] {
        if (socket.State() == SocketState::connected) static_cast<void>(socket.SendNow("x"));
        return client.saw("error 10054") || client.saw("error 10053") || client.saw("close");
      },
      kPatience));
  socket.Close();
  EXPECT_THROW(socket.SendNow("x"), std::exception);
}

}  // namespace
}  // namespace kelvaron::testing
