// Connections of the native socket: how they begin, carry bytes and end.
#include "native/native_socket.h"

#include <gtest/gtest.h>
#include <netdb.h>

#include <atomic>
#include <future>
#include <string>
#include <system_error>
#include <thread>

#include "platform/fault.h"
#include "tests/native/raw_peer.h"

namespace kelvaron::testing {
namespace {

using Log = std::vector<std::string>;

int faultOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const Fault& fault) {
    return fault.number();
  }
  return 0;
}

/// A loop that delivers every event once more when it is long out of date.
class StaleLoop : public EventLoop {
 public:
  std::unique_ptr<LoopWatch> watch(int descriptor, Readiness readiness,
                                   std::function<void()> ready) override {
    given.push_back(ready);
    return loop.watch(descriptor, readiness, std::move(ready));
  }
  std::unique_ptr<LoopWatch> after(std::chrono::milliseconds delay,
                                   std::function<void()> due) override {
    given.push_back(due);
    return loop.after(delay, std::move(due));
  }
  void deliverAgain() {
    for (const auto& call : std::vector(given)) call();
  }

  PollLoop loop;
  std::vector<std::function<void()>> given;
};

class NativeSocketTest : public ::testing::Test {
 protected:
  PollLoop loop;
  RawListener listener;
  LoggedSocket client{loop};

  void runUntil(const std::function<bool()>& done) { ASSERT_TRUE(loop.runUntil(done, kPatience)); }
  void settle() {
    loop.runUntil([] { return false; }, 20ms);
  }
};

TEST_F(NativeSocketTest, CallsInTheWrongState) {
  Socket& socket = *client.socket;
  EXPECT_EQ(faultOf([&] { socket.Connect("", 1); }), 10049);
  EXPECT_EQ(faultOf([&] { socket.SendData("x"); }), 40006);
  EXPECT_EQ(faultOf([&] { socket.Accept(1); }), 5);
  EXPECT_EQ(faultOf([&] { socket.Listen(listener.port()); }), 10048);
  EXPECT_EQ(socket.State(), SocketState::closed);

  socket.Connect("127.0.0.1", listener.port());
  EXPECT_EQ(socket.State(), SocketState::connecting);
  EXPECT_EQ(client.log, Log{});
  EXPECT_EQ(faultOf([&] { socket.Connect("127.0.0.1", listener.port()); }), 40020);
  EXPECT_EQ(faultOf([&] { socket.Listen(0); }), 40020);
  EXPECT_EQ(faultOf([&] { socket.SendData("x"); }), 40006);
  runUntil([&] { return client.saw("connect"); });
  EXPECT_EQ(faultOf([&] { socket.Accept(1); }), 40020);
}

TEST_F(NativeSocketTest, ConnectionsThatFail) {
  // Of a full backlog, Linux ignores further requests: an address that does not answer.
  RawListener full(0);
  RawPeer first(full.port());
  const auto unknown = [](const std::string&, std::uint16_t) {
    return Resolution{{}, lookUpError(EAI_NONAME, 0)};
  };
  struct Case {
    const char* host;
    LookUp lookUp;
    const char* description;
    int number;
    std::uint16_t port;
  };
  const Case cases[] = {
      {"127.0.0.1", systemLookUp, "The connection was refused", 10061, freePort()},
      {"::1", systemLookUp, "The connection was refused", 10061, freePort()},
      {"localhost", systemLookUp, "The connection was refused", 10061, freePort()},
      {"nobody.example", unknown, "The host was not found", 11001, 1},
      {"empty.example", [](auto&&...) { return Resolution{}; }, "The host was not found", 11001, 1},
      {"127.0.0.1", systemLookUp, "The connection timed out", 10060, full.port()},
      {"255.255.255.255", systemLookUp, "The network cannot be reached", 10051, 1},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(std::string(row.host) + " " + std::to_string(row.port));
    LoggedSocket failing(loop, {200ms, row.lookUp});
    failing.socket->Connect(row.host, row.port);
    runUntil([&] { return !failing.log.empty(); });
    EXPECT_EQ(failing.log, Log{"error " + std::to_string(row.number)});
    EXPECT_EQ(failing.description, row.description);
    EXPECT_EQ(failing.socket->State(), SocketState::failed);
    EXPECT_EQ(faultOf([&] { failing.socket->Connect("127.0.0.1", 1); }), 40020);
    failing.socket->Close();
    failing.socket->Connect("127.0.0.1", listener.port());
    runUntil([&] { return failing.saw("connect"); });
  }
}

TEST_F(NativeSocketTest, HostNamesThatTheSystemDoesNotKnow) {
  for (const std::string& host : {std::string("kelvaron.invalid"), std::string(300, 'a'),
                                  std::string("127.0.0.1\0x", 11), std::string("a b")}) {
    LoggedSocket failing(loop, {4s, systemLookUp});
    failing.socket->Connect(host, 1);
    runUntil([&] { return !failing.log.empty(); });
    // 11002 on a machine whose name server cannot be asked.
    EXPECT_TRUE(failing.saw("error 11001") || failing.saw("error 11002")) << failing.log[0];
  }
}

TEST_F(NativeSocketTest, AddressesAreTriedInTurn) {
  RawListener full(0);
  RawPeer first(full.port());
  LoggedSocket patient(loop, {600ms, [&](const std::string& host, std::uint16_t port) {
                                EXPECT_EQ(host, "several.example");
                                return Resolution{{*numericEndpoint("255.255.255.255", port),
                                                   *numericEndpoint("127.0.0.1", freePort()),
                                                   *numericEndpoint("127.0.0.1", full.port()),
                                                   *numericEndpoint("127.0.0.1", port)},
                                                  {}};
                              }});
  patient.socket->Connect("several.example", listener.port());
  runUntil([&] { return !patient.log.empty(); });
  EXPECT_EQ(patient.log, Log{"connect"});
  listener.accept().send("hello");
  runUntil([&] { return patient.received == "hello"; });
}

TEST_F(NativeSocketTest, LookUpIsAbandonedSafely) {
  std::promise<void> release;
  const auto released = release.get_future().share();
  std::atomic<int> finished = 0;
  const LookUp slow = [&finished, released](const std::string&, std::uint16_t port) {
    released.wait();
    ++finished;
    return Resolution{{*numericEndpoint("127.0.0.1", port)}, {}};
  };
  auto destroyed = std::make_unique<LoggedSocket>(loop, ConnectSettings{32s, slow});
  LoggedSocket closed(loop, {32s, slow});
  LoggedSocket timedOut(loop, {30ms, slow});
  for (LoggedSocket* each : {destroyed.get(), &closed, &timedOut}) {
    each->socket->Connect("slow.example", listener.port());
  }
  settle();
  destroyed.reset();
  closed.socket->Close();
  runUntil([&] { return timedOut.saw("error 10060"); });
  release.set_value();
  runUntil([&] { return finished == 3; });
  settle();
  EXPECT_EQ(closed.log, Log{});
  EXPECT_EQ(timedOut.log, Log{"error 10060"});
}

TEST_F(NativeSocketTest, BothSidesTalkAndTellTheirAddresses) {
  RawPeer peer = join(loop, client, listener);
  EXPECT_EQ(client.socket->LocalIP(), "127.0.0.1");
  EXPECT_EQ(client.socket->RemoteHostIP(), "127.0.0.1");
  EXPECT_GT(client.socket->LocalPort(), 0);
  client.socket->SendData("one ");
  client.socket->SendData("");
  client.socket->SendData("two ");
  client.socket->SendData("three");
  EXPECT_EQ(client.log, Log{"connect"});
  EXPECT_EQ(peer.receive(), "one ");
  runUntil([&] { return client.saw("sent"); });
  EXPECT_EQ(peer.receive(), "two three");
  EXPECT_EQ(client.socket->BytesQueued(), 0U);
  settle();
  EXPECT_EQ(client.log, (Log{"connect", "sent"}));

  client.socket->Close();
  EXPECT_EQ(client.socket->RemoteHostIP(), "");
  EXPECT_EQ(client.socket->LocalPort(), 0);
  EXPECT_EQ(peer.receive(), "");
  const std::string machine = client.socket->LocalIP();
  EXPECT_TRUE(machine == firstMachineAddress() && numericEndpoint(machine, 0)) << machine;
}

TEST_F(NativeSocketTest, ListenerHandsConnectionsOver) {
  NativeSocketPort port(loop);
  const auto listening = port.makeSocket();
  std::vector<std::unique_ptr<Socket>> accepted;
  int requests = 0;
  int lastId = 0;
  listening->onConnectionRequest = [&](int id) {
    lastId = id;
    if (++requests == 2) return;  // turned away
    if (requests == 3) {
      listening->Close();
      listening->Accept(id);
      listening->SendData("myself");
      return;
    }
    accepted.push_back(port.makeSocket());
    accepted.back()->Accept(id);
    EXPECT_EQ(accepted.back()->State(), SocketState::connected);
    EXPECT_EQ(accepted.back()->RemoteHostIP(), requests == 1 ? "127.0.0.1" : "::1");
    accepted.back()->SendData("welcome");
  };
  listening->Listen(0);
  EXPECT_EQ(listening->State(), SocketState::listening);
  const std::uint16_t number = listening->LocalPort();
  EXPECT_EQ(faultOf([&] { port.makeSocket()->Listen(number); }), 10048);

  RawPeer first(number);
  RawPeer second(number);
  RawPeer third(number);
  runUntil([&] { return requests == 3; });
  EXPECT_EQ(first.receive(), "welcome");
  EXPECT_EQ(second.receive(), "");
  EXPECT_EQ(third.receive(), "myself");
  EXPECT_EQ(faultOf([&] { port.makeSocket()->Accept(lastId); }), 5);

  LoggedSocket overIpv6(loop);
  listening->Close();
  listening->Listen(number);
  overIpv6.socket->Connect("::1", number);
  runUntil([&] { return !overIpv6.log.empty(); });
  EXPECT_EQ(overIpv6.log, Log{"connect"});
  EXPECT_EQ(overIpv6.socket->RemoteHostIP(), "::1");
}

TEST_F(NativeSocketTest, PeerThatDoesNotReadMakesTheQueueGrow) {
  RawPeer peer = join(loop, client, listener);
  std::string sent;
  for (int part = 0; part < 100; ++part) {
    const std::string bytes(100'000, static_cast<char>('a' + part % 26));
    client.socket->SendData(bytes);
    sent += bytes;
  }
  settle();
  EXPECT_GT(client.socket->BytesQueued(), 1'000'000U);
  EXPECT_EQ(client.log, Log{"connect"});
  auto reading = std::async(std::launch::async, [&] { return peer.receiveAll(); });
  runUntil([&] { return client.saw("sent"); });
  EXPECT_EQ(client.socket->BytesQueued(), 0U);
  client.socket->Close();
  EXPECT_TRUE(reading.get() == sent);
}

TEST_F(NativeSocketTest, PeerThatAsksAndDoesNotReadHasToWait) {
  client.socket->HoldBackUnfinishedLine(60s);
  RawPeer peer = join(loop, client, listener);
  std::size_t most = 0;
  client.socket->onDataArrival = [&] {
    client.socket->SendData(client.socket->GetData());
    most = std::max(most, client.socket->BytesQueued());
  };
  const std::string asked(std::size_t{24} << 20U, '\n');
  std::thread asking([&] { peer.send(asked); });
  loop.runUntil([] { return false; }, 300ms);
  EXPECT_LE(most, NativeSocket::kUnsentLimit + NativeSocket::kReadPerTurn);
  std::atomic<std::size_t> answered = 0;
  std::thread reading([&] {
    while (answered < asked.size()) answered += peer.receive().size();
  });
  EXPECT_TRUE(loop.runUntil([&] { return answered == asked.size(); }, 20s));
  asking.join();
  reading.join();
}

TEST_F(NativeSocketTest, HandlerThatDoesNotReadMakesThePeerWait) {
  RawPeer peer = join(loop, client, listener);
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
    loop.runUntil([] { return false; }, 50ms);
  } while (client.log.size() > raised);
  client.received = client.socket->GetData();
  EXPECT_GE(client.received.size(), NativeSocket::kUnreadLimit);
  EXPECT_LE(client.received.size(), NativeSocket::kUnreadLimit + NativeSocket::kReadPerTurn);
  client.reads = true;
  runUntil([&] { return client.received.size() > NativeSocket::kUnreadLimit + 2'000'000; });
  EXPECT_TRUE(sent.starts_with(client.received));
  client.socket->Close();
}

TEST_F(NativeSocketTest, EndsAfterAllThatCameBefore) {
  struct Case {
    const char* name;
    bool reset;
    bool reads;
    bool sends;  // into the dead connection, before the loop has seen its end
    Log log;
  };
  const Case cases[] = {
      {"close", false, true, false, {"connect", "data", "close"}},
      {"close, not read", false, false, false, {"connect", "data", "close"}},
      {"close, sending", false, true, true, {"connect", "data", "close"}},
      {"reset", true, true, false, {"connect", "data", "error 10054"}},
      {"reset, not read", true, false, false, {"connect", "data", "error 10054"}},
      {"reset, sending", true, true, true, {"connect", "data", "error 10054"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    LoggedSocket ending(loop);
    ending.reads = row.reads;
    RawPeer peer = join(loop, ending, listener);
    ending.socket->HoldBackUnfinishedLine(60s);
    peer.send("last words\nand a tail");
    row.reset ? peer.reset() : peer.close();
    if (row.sends) {
      // The first send can still be taken; it brings the reset that the second one meets.
      for (int send = 0; send < 3; ++send) ending.socket->SendData(std::string(70'000, 's'));
      EXPECT_EQ(ending.log, Log{"connect"});
    }
    runUntil([&] { return ending.log.size() == 3; });
    settle();
    EXPECT_EQ(ending.log, row.log);
    EXPECT_EQ(ending.socket->State(), row.reset ? SocketState::failed : SocketState::peerClosing);
    EXPECT_EQ(ending.received + ending.socket->GetData(), "last words\nand a tail");
    EXPECT_EQ(ending.socket->RemoteHostIP(), "127.0.0.1");
    EXPECT_EQ(faultOf([&] { ending.socket->SendData("x"); }), 40006);
    ending.socket->Close();
    EXPECT_EQ(ending.socket->GetData(), "");
  }
}

TEST_F(NativeSocketTest, StaleEventsOfTheLoopAreIgnored) {
  StaleLoop stale;
  auto each = std::make_unique<LoggedSocket>(stale);
  each->socket->HoldBackUnfinishedLine(60s);
  each->socket->Connect("localhost", listener.port());
  ASSERT_TRUE(stale.loop.runUntil([&] { return each->saw("connect"); }, kPatience));
  RawPeer peer = listener.accept();
  peer.send("line\ntail");
  ASSERT_TRUE(stale.loop.runUntil([&] { return each->saw("data"); }, kPatience));
  each->socket->SendData(std::string(8'000'000, 's'));
  each->socket->Close();
  each->socket->Listen(0);
  const std::size_t before = stale.given.size();
  stale.deliverAgain();
  RawPeer waiting(each->socket->LocalPort());
  EXPECT_EQ(each->log, (Log{"connect", "data"}));
  stale.deliverAgain();  // the listener's own call among them is not out of date
  EXPECT_EQ(each->log, (Log{"connect", "data", "request"}));
  EXPECT_EQ(stale.given.size(), before);
  each.reset();
  stale.deliverAgain();
}

TEST_F(NativeSocketTest, HalfClosedPeerStillGetsTheRest) {
  RawPeer peer = join(loop, client, listener);
  const std::string sent(8'000'000, 'h');
  client.socket->SendData(sent);
  EXPECT_GT(client.socket->BytesQueued(), 0U);
  peer.endSending();
  runUntil([&] { return client.saw("close"); });
  auto reading = std::async(std::launch::async, [&] { return peer.receiveAll(); });
  runUntil([&] { return client.saw("sent"); });
  client.socket->Close();
  EXPECT_TRUE(reading.get() == sent);
}

TEST_F(NativeSocketTest, CloseDeliversWhatWasTakenEvenOverUnreadBytes) {
  RawPeer peer = join(loop, client, listener);
  peer.send("never read");
  client.socket->SendData("QUIT");
  client.socket->SendData("\r\n");
  client.socket->Close();
  EXPECT_EQ(peer.receiveAll(), "QUIT\r\n");
  settle();
  EXPECT_EQ(client.log, Log{"connect"});
}

}  // namespace
}  // namespace kelvaron::testing
