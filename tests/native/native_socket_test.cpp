// Connections of the native socket: how they begin and end.
#include "native/native_socket.h"

#include <atomic>
#include <future>
#include <tuple>

#include "tests/native/native_test.h"
#include "tests/support/raw_peer.h"

namespace kelvaron::testing {
namespace {

using namespace std::string_literals;

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

class NativeSocketTest : public SocketTest {};

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
  const LookUp unknown = [](auto&&...) { return Resolution{{}, lookUpError(EAI_NONAME, 0)}; };
  const LookUp empty = [](auto&&...) { return Resolution{}; };
  const std::tuple<const char*, std::uint16_t, LookUp, int, const char*> cases[] = {
      {"127.0.0.1", freePort(), systemLookUp, 10061, "The connection was refused"},
      {"::1", freePort(), systemLookUp, 10061, "The connection was refused"},
      {"localhost", freePort(), systemLookUp, 10061, "The connection was refused"},
      {"nobody.example", 1, unknown, 11001, "The host was not found"},
      {"empty.example", 1, empty, 11001, "The host was not found"},
      {"127.0.0.1", full.port(), systemLookUp, 10060, "The connection timed out"},
      {"255.255.255.255", 1, systemLookUp, 10051, "The network cannot be reached"},
  };
  for (const auto& [host, port, lookUp, number, description] : cases) {
    SCOPED_TRACE(host + (" " + std::to_string(port)));
    LoggedSocket failing(loop, {200ms, lookUp});
    failing.socket->Connect(host, port);
    runUntil([&] { return !failing.log.empty(); });
    EXPECT_EQ(failing.log, Log{"error " + std::to_string(number)});
    EXPECT_EQ(failing.description, description);
    EXPECT_EQ(failing.socket->State(), SocketState::failed);
    EXPECT_EQ(faultOf([&] { failing.socket->Connect("127.0.0.1", 1); }), 40020);
    failing.socket->Close();
    failing.socket->Connect("127.0.0.1", listener.port());
    runUntil([&] { return failing.saw("connect"); });
  }
  for (const auto& host : {"kelvaron.invalid"s, std::string(300, 'a'), "127.0.0.1\0x"s, "a b"s}) {
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
  const LookUp several = [&](const std::string& host, std::uint16_t port) {
    EXPECT_EQ(host, "several.example");
    return Resolution{
        {*numericEndpoint("255.255.255.255", port), *numericEndpoint("127.0.0.1", freePort()),
         *numericEndpoint("127.0.0.1", full.port()), *numericEndpoint("127.0.0.1", port)},
        {}};
  };
  LoggedSocket patient(loop, {600ms, several});
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
  runFor(20ms);
  destroyed.reset();
  closed.socket->Close();
  runUntil([&] { return timedOut.saw("error 10060"); });
  release.set_value();
  runUntil([&] { return finished == 3; });
  runFor(20ms);
  EXPECT_EQ(closed.log, Log{});
  EXPECT_EQ(timedOut.log, Log{"error 10060"});
}

TEST_F(NativeSocketTest, ListenerHandsConnectionsOver) {
  NativeSocketPort port(loop);
  const auto listening = port.makeSocket();
  const auto accepting = port.makeSocket();
  int requests = 0;
  int lastId = 0;
  listening->onConnectionRequest = [&](int id) {
    lastId = id;
    if (++requests == 2) return;  // turned away
    Socket& taker = requests == 3 ? *listening : *accepting;
    taker.Close();
    taker.Accept(id);
    EXPECT_EQ(taker.State(), SocketState::connected);
    EXPECT_EQ(taker.LocalIP(), requests <= 3 ? "127.0.0.1" : "::1");
    taker.SendData("welcome " + std::to_string(requests));
  };
  listening->Listen(0);
  EXPECT_EQ(listening->State(), SocketState::listening);
  const std::uint16_t number = listening->LocalPort();
  EXPECT_EQ(faultOf([&] { port.makeSocket()->Listen(number); }), 10048);
  RawPeer first(number);
  RawPeer second(number);
  RawPeer third(number);
  runUntil([&] { return requests == 3; });
  EXPECT_EQ(first.receive(), "welcome 1");
  EXPECT_EQ(second.receive(), "");
  EXPECT_EQ(third.receive(), "welcome 3");
  EXPECT_EQ(faultOf([&] { port.makeSocket()->Accept(lastId); }), 5);

  listening->Close();
  listening->Listen(number);
  client.socket->Connect("::1", number);
  runUntil([&] { return client.received == "welcome 4"; });
  EXPECT_EQ(client.socket->LocalIP(), "::1");
}

TEST_F(NativeSocketTest, EndsAfterAllThatCameBefore) {
  for (const bool reset : {false, true}) {
    for (const std::string how : {"reading", "not reading", "sending"}) {
      SCOPED_TRACE(how + (reset ? ", reset" : ", close"));
      LoggedSocket ending(loop);
      ending.reads = how != "not reading";
      RawPeer peer = join(ending);
      ending.socket->HoldBackUnfinishedLine(60s);
      peer.send("last words\nand a tail");
      reset ? peer.reset() : peer.close();
      if (how == "sending") {
        // The first send can still be taken; it brings the reset that the second one meets.
        for (int send = 0; send < 3; ++send) ending.socket->SendData(std::string(70'000, 's'));
        EXPECT_EQ(ending.log, Log{"connect"});
      }
      runUntil([&] { return ending.log.size() == 3; });
      runFor(20ms);
      const bool failed = kResetsAreTold ? reset : ending.socket->State() == SocketState::failed;
      EXPECT_EQ(ending.log, (Log{"connect", "data", failed ? "error 10054" : "close"}));
      EXPECT_EQ(ending.socket->State(), failed ? SocketState::failed : SocketState::peerClosing);
      EXPECT_EQ(ending.received + ending.socket->GetData(), "last words\nand a tail");
      EXPECT_EQ(faultOf([&] { ending.socket->SendData("x"); }), 40006);
      ending.socket->Close();
      EXPECT_EQ(ending.socket->GetData(), "");
    }
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

}  // namespace
}  // namespace kelvaron::testing
