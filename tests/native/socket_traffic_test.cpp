// Bytes over a connection of the native socket: sent, queued, held back, made to wait.
#include <atomic>
#include <future>
#include <random>
#include <thread>

#include "native/machine.h"
#include "tests/support/raw_peer.h"

namespace kelvaron::testing {
namespace {

using std::chrono::steady_clock;

class SocketTraffic : public SocketTest {
 protected:
  RawPeer peer = join(client);
  Socket& socket = *client.socket;

  void runUntilReceived(std::size_t bytes) {
    ASSERT_TRUE(loop.runUntil([&] { return client.received.size() >= bytes; }, kPatience))
        << client.received.size() << " of " << bytes << " bytes";
  }
  /// Lets the socket read what the peer has sent already.
  void turns() {
    for (int turn = 0; turn < 3; ++turn) loop.runOnce(0ms);
  }
};

TEST_F(SocketTraffic, BothSidesTalkAndTellTheirAddresses) {
  EXPECT_EQ(socket.LocalIP(), "127.0.0.1");
  EXPECT_GT(socket.LocalPort(), 0);
  for (const char* bytes : {"one ", "", "two ", "three"}) socket.SendData(bytes);
  EXPECT_EQ(client.log, Log{"connect"});
  EXPECT_EQ(peer.receive(), "one ");
  runUntil([&] { return client.saw("sent"); });
  EXPECT_EQ(peer.receive(), "two three");
  runFor(20ms);
  EXPECT_EQ(client.log, (Log{"connect", "sent"}));

  socket.Close();
  EXPECT_EQ(socket.LocalPort(), 0);
  EXPECT_EQ(peer.receive(), "");
  const std::string machine = socket.LocalIP();
  EXPECT_TRUE(machine == firstMachineAddress() && numericEndpoint(machine, 0)) << machine;
}

TEST_F(SocketTraffic, PeerThatDoesNotReadMakesTheQueueGrow) {
  for (const bool halfClosed : {false, true}) {
    LoggedSocket sending(loop);
    RawPeer slow = join(sending);
    std::string sent;
    for (int part = 0; part < 100; ++part) {
      const std::string bytes(100'000, static_cast<char>('a' + part % 26));
      sending.socket->SendData(bytes);
      sent += bytes;
    }
    if (halfClosed) slow.endSending();
    runUntil([&] { return sending.saw("close") == halfClosed; });
    runFor(20ms);
    EXPECT_FALSE(sending.saw("sent"));
    auto reading = std::async(std::launch::async, [&] { return slow.receiveAll(); });
    runUntil([&] { return sending.saw("sent"); });
    sending.socket->Close();
    EXPECT_TRUE(reading.get() == sent);
  }
}

TEST_F(SocketTraffic, PeerThatAsksAndDoesNotReadHasToWait) {
  socket.HoldBackUnfinishedLine(60s);
  std::size_t given = 0;
  socket.onDataArrival = [&] {
    const std::string bytes = socket.GetData();
    given += bytes.size();
    socket.SendData(bytes);
  };
  const std::string asked(std::size_t{24} << 20U, '\n');
  std::thread asking([&] { peer.send(asked); });
  runFor(300ms);
  EXPECT_LT(given, asked.size());
  std::atomic<std::size_t> answered = 0;
  std::thread reading([&] {
    while (answered < asked.size()) answered += peer.receive().size();
  });
  EXPECT_TRUE(loop.runUntil([&] { return answered == asked.size(); }, 20s));
  asking.join();
  reading.join();
}

TEST_F(SocketTraffic, HandlerThatDoesNotReadMakesThePeerWait) {
  client.reads = false;
  std::string sent;
  sent.resize(32'000'000);
  for (std::size_t at = 0; at < sent.size(); ++at) sent[at] = static_cast<char>(at / 1000);
  auto sending = std::async(std::launch::async, [&] {
    EXPECT_THROW(peer.send(sent), std::system_error);  // not all of it is ever taken
  });
  std::size_t raised = 0;
  do {
    raised = client.log.size();
    runFor(50ms);
  } while (client.log.size() > raised);
  client.received = socket.GetData();
  EXPECT_GE(client.received.size(), NativeSocket::kUnreadLimit);
  EXPECT_LE(client.received.size(), NativeSocket::kUnreadLimit + NativeSocket::kReadPerTurn);
  client.reads = true;
  runUntilReceived(NativeSocket::kUnreadLimit + 2'000'000);
  EXPECT_TRUE(sent.starts_with(client.received));
  socket.Close();
}

TEST_F(SocketTraffic, CloseDeliversWhatWasTakenEvenOverUnreadBytes) {
  peer.send("never read");
  socket.SendData("QUIT");
  socket.SendData("\r\n");
  socket.Close();
  EXPECT_EQ(peer.receiveAll(), "QUIT\r\n");
  runFor(20ms);
  EXPECT_EQ(client.log, Log{"connect"});
}

TEST_F(SocketTraffic, BlocksThatTheSystemDoesNotTakeAreReportedWhenTheyAreGone) {
  const std::string block(2048, 'x');
  std::size_t given = block.size();
  for (; socket.SendNow(block) && given < (std::size_t{64} << 20U);) given += block.size();
  EXPECT_FALSE(socket.SendNow("more"));
  given += 4;
  EXPECT_FALSE(client.saw("sent"));
  std::size_t got = 0;
  while (got < given) {
    got += peer.receive().size();
    loop.runOnce(0ms);
  }
  EXPECT_EQ(got, given);
  runUntil([&] { return client.saw("sent"); });
  EXPECT_TRUE(socket.SendNow("again"));
}

TEST_F(SocketTraffic, BlocksRaiseNothingAndKeepTheOrderWithSendData) {
  EXPECT_TRUE(socket.SendNow("block "));
  EXPECT_TRUE(socket.SendNow("block "));
  runFor(30ms);
  EXPECT_FALSE(client.saw("sent"));
  socket.SendData("a");
  socket.SendData("b");
  EXPECT_TRUE(socket.SendNow("c"));
  socket.SendData("d");
  runUntil([&] { return client.saw("sent"); });
  socket.Close();
  EXPECT_EQ(peer.receiveAll(), "block block abcd");
}

TEST_F(SocketTraffic, BlocksOverALostConnectionRaiseItAsAlways) {
  peer.reset();
  runFor(1ms);
  runUntil([&] {
    if (socket.State() == SocketState::connected) static_cast<void>(socket.SendNow("x"));
    return client.saw("error 10054") || client.saw("error 10053") || client.saw("close");
  });
  socket.Close();
  EXPECT_THROW(socket.SendNow("x"), std::exception);
}

TEST_F(SocketTraffic, TenThousandLinesCutAnywhereArriveWhole) {
  socket.HoldBackUnfinishedLine(60s);
  std::mt19937 random(4711);
  std::string text;
  for (int line = 0; line < 10'000; ++line) {
    text += std::to_string(line) + std::string(random() % 90, 'x') + "\r\n";
  }
  for (std::size_t sent = 0; sent < text.size();) {
    const std::string chunk = text.substr(sent, 1 + random() % 1500);
    peer.send(chunk);
    sent += chunk.size();
    if (random() % 3 == 0 && sent < text.size()) continue;  // arrives together with the next one
    const std::size_t whole = text.rfind('\n', sent - 1) + 1;
    runUntil([&] { return client.received.size() == whole; });
    ASSERT_EQ(client.received.size(), whole) << "of " << sent;
  }
  EXPECT_TRUE(client.received == text);
}

TEST_F(SocketTraffic, TailsAgeFromTheirOwnFirstByte) {
  constexpr auto kLimit = 400ms;
  socket.HoldBackUnfinishedLine(kLimit);
  peer.send("old tail");
  turns();
  runFor(50ms);
  const auto begun = steady_clock::now();
  peer.send(" ends\nnew tail");
  runUntilReceived(1);
  EXPECT_EQ(client.received, "old tail ends\n");
  runUntilReceived(22);
  EXPECT_GE(steady_clock::now() - begun, kLimit);
  peer.send(" ends late\n");
  runUntilReceived(33);
  EXPECT_EQ(client.received, "old tail ends\nnew tail ends late\n");
}

TEST_F(SocketTraffic, TailIsCompletedWhileTheLoopWasBusy) {
  socket.HoldBackUnfinishedLine(20ms);
  client.reads = false;
  peer.send("RO");
  turns();
  // The rest of the line comes in the turn in which the tail is due, as after a long handler.
  const auto rest = loop.after(0ms, [&] { peer.send("OM\nta"); });
  std::this_thread::sleep_for(40ms);
  loop.runOnce(0ms);
  EXPECT_EQ(socket.GetData(), "ROOM\n");
}

TEST_F(SocketTraffic, TailsThatAreEndlessOrNoLongerToBeHeldGo) {
  socket.HoldBackUnfinishedLine(60s);
  const std::string endless(ArrivalBuffer::kLongestTail / 8, 'e');
  for (int part = 0; part < 8; ++part) {
    peer.send(endless);
    turns();
  }
  EXPECT_EQ(client.received, "");
  peer.send("e");
  runUntilReceived(8 * endless.size() + 1);
  client.received.clear();
  peer.send("tail");
  turns();
  EXPECT_EQ(client.received, "");
  socket.HoldBackUnfinishedLine(0ms);
  runUntilReceived(4);
}

TEST_F(SocketTraffic, EndOfAStreamThatWasStillLetsTheTailGoFirst) {
  socket.HoldBackUnfinishedLine(60s);
  peer.send("line\ntail");
  turns();
  EXPECT_EQ(client.received, "line\n");
  peer.close();
  runUntil([&] { return client.saw("close"); });
  EXPECT_EQ(client.received, "line\ntail");
  EXPECT_EQ(client.log, (Log{"connect", "data", "data", "close"}));
}

TEST_F(SocketTraffic, TailIsNotReleasedWhileReadingIsPaused) {
  socket.HoldBackUnfinishedLine(20ms);
  client.reads = false;
  // What is unread at the limit ends in the middle of a line; the rest waits with the peer.
  std::string lines;
  while (lines.size() < NativeSocket::kUnreadLimit * 2) lines += "Users\tsomebody else\r\n";
  std::thread sending([&] { peer.send(lines); });
  runFor(300ms);
  client.reads = true;
  client.received += socket.GetData();
  EXPECT_EQ(client.received.back(), '\n') << "half a line does not count as arrived";
  runUntilReceived(lines.size());
  sending.join();
  EXPECT_EQ(client.received, lines);
}

}  // namespace
}  // namespace kelvaron::testing
