// Handlers that close, destroy or reuse the socket whose event they handle.
#include <optional>
#include <tuple>

#include "tests/support/raw_peer.h"

namespace kelvaron::testing {
namespace {

using EventAndDeed = std::tuple<std::string, std::string>;

class SocketHandler : public SocketTest, public ::testing::WithParamInterface<EventAndDeed> {
 protected:
  const std::string event = std::get<0>(GetParam());
  const std::string deed = std::get<1>(GetParam());
  RawListener other;
  std::unique_ptr<Socket> socket = NativeSocketPort(loop).makeSocket();
  std::optional<RawPeer> peer;
  int calls = 0;

  void act() {
    ++calls;
    if (deed == "fail") throw std::runtime_error("from the handler");
    if (deed == "turn the loop") runFor(5ms);
    if (deed == "close") socket->Close();
    if (deed == "destroy") socket.reset();
    if (deed == "connect again" && calls == 1) {
      socket->Close();
      socket->onConnect = nullptr;
      socket->Connect("127.0.0.1", other.port());
    }
  }

  /// Brings the event about, and whatever else could come right behind it.
  void provoke() {
    if (event == "request") {
      socket->Listen(0);
      peer.emplace(socket->LocalPort());
      RawPeer second(socket->LocalPort());
      return;
    }
    if (event == "error") return socket->Connect("127.0.0.1", freePort());
    socket->Connect("127.0.0.1", listener.port());
    loop.runOnce(kPatience);  // begins to connect, and raises nothing yet
    ASSERT_EQ(calls, 0);
    peer.emplace(listener.accept());
    if (event == "connect" || event == "sent") return;
    runUntil([&] { return socket->State() == SocketState::connected; });
    peer->send("bytes\nand a tail");
    peer->close();
    socket->SendData("an answer to nobody");
  }

  bool run(const std::function<bool()>& done, std::chrono::milliseconds limit = kPatience) {
    try {
      return loop.runUntil(done, limit);
    } catch (const std::runtime_error&) {
      return run(done, limit);
    }
  }
};

TEST_P(SocketHandler, MayDoAnything) {
  // Captures more than fits a std::function itself, so that its end in memory shows.
  const auto handler = [this, padding = std::string(100, 'p')](auto&&...) {
    act();
    EXPECT_EQ(padding.size(), 100U);
  };
  if (event == "connect") socket->onConnect = handler;
  if (event == "request") socket->onConnectionRequest = handler;
  if (event == "data") socket->onDataArrival = handler;
  if (event == "sent") {
    socket->onConnect = [this] { socket->SendData("greeting"); };
    socket->onSendComplete = handler;
  }
  if (event == "close") socket->onClose = handler;
  if (event == "error") socket->onError = handler;
  socket->HoldBackUnfinishedLine(event == "data" ? 5ms : 0ms);
  provoke();
  ASSERT_TRUE(run([&] { return calls > 0; }));
  if (deed == "connect again") {
    ASSERT_TRUE(run([&] { return socket->State() == SocketState::connected; }));
    RawPeer next = other.accept();
    next.endSending();
    ASSERT_TRUE(run([&] { return socket->State() == SocketState::peerClosing; }));
  }
  run([] { return false; }, 10ms);
  // Two requests wait, and the connection made again ends like the first one.
  const bool twice = event == "request" ? deed == "turn the loop" || deed == "fail"
                                        : event == "close" && deed == "connect again";
  EXPECT_EQ(calls, twice ? 2 : 1);
  if (deed == "close") {
    EXPECT_EQ(socket->State(), SocketState::closed);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, SocketHandler,
                         ::testing::Combine(::testing::Values("connect", "request", "data", "sent",
                                                              "close", "error"),
                                            ::testing::Values("close", "destroy", "connect again",
                                                              "turn the loop", "fail")));

}  // namespace
}  // namespace kelvaron::testing
