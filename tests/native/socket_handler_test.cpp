// Handlers that close, destroy or reuse the socket whose event they handle.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <tuple>

#include "tests/native/raw_peer.h"

namespace kelvaron::testing {
namespace {

enum class Event { connect, request, data, sent, close, error };
enum class Deed { close, destroy, connectAgain, turnTheLoop, fail };

constexpr std::pair<Event, const char*> kEvents[] = {
    {Event::connect, "connect"}, {Event::request, "request"}, {Event::data, "data"},
    {Event::sent, "sent"},       {Event::close, "close"},     {Event::error, "error"}};
constexpr std::pair<Deed, const char*> kDeeds[] = {{Deed::close, "close"},
                                                   {Deed::destroy, "destroy"},
                                                   {Deed::connectAgain, "connectAgain"},
                                                   {Deed::turnTheLoop, "turnTheLoop"},
                                                   {Deed::fail, "fail"}};

class SocketHandler : public ::testing::TestWithParam<
                          std::tuple<std::pair<Event, const char*>, std::pair<Deed, const char*>>> {
 protected:
  PollLoop loop;
  RawListener listener;
  RawListener other;
  std::unique_ptr<Socket> socket = NativeSocketPort(loop).makeSocket();
  std::optional<RawPeer> peer;
  int calls = 0;

  void act(Deed deed) {
    ++calls;
    switch (deed) {
      case Deed::close:
        return socket->Close();
      case Deed::destroy:
        return socket.reset();
      case Deed::connectAgain:
        if (calls > 1) return;
        socket->Close();
        socket->onConnect = nullptr;
        return socket->Connect("127.0.0.1", other.port());
      case Deed::turnTheLoop:
        for (int turn = 0; turn < 5; ++turn) loop.runOnce(1ms);
        return;
      case Deed::fail:
        throw std::runtime_error("from the handler");
    }
  }

  /// Brings the event about, and whatever else could come right behind it.
  void provoke(Event event) {
    if (event == Event::request) {
      socket->Listen(0);
      peer.emplace(socket->LocalPort());
      RawPeer second(socket->LocalPort());
      return;
    }
    if (event == Event::error) return socket->Connect("127.0.0.1", freePort());
    socket->Connect("127.0.0.1", listener.port());
    loop.runOnce(kPatience);  // begins to connect, and raises nothing yet
    ASSERT_EQ(calls, 0);
    peer.emplace(listener.accept());
    if (event == Event::connect || event == Event::sent) return;
    ASSERT_TRUE(
        loop.runUntil([&] { return socket->State() == SocketState::connected; }, kPatience));
    peer->send("bytes\nand a tail");
    peer->close();
    socket->SendData("an answer to nobody");
  }

  bool run(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    try {
      return loop.runUntil(done, limit);
    } catch (const std::runtime_error&) {
      return run(done, limit);
    }
  }
};

TEST_P(SocketHandler, MayDoAnything) {
  const auto [event, eventName] = std::get<0>(GetParam());
  const auto [deed, deedName] = std::get<1>(GetParam());
  // Captures more than fits a std::function itself, so that its end in memory shows.
  const auto handler = [this, it = deed, padding = std::string(100, 'p')](auto&&...) {
    act(it);
    EXPECT_EQ(padding.size(), 100U);
  };
  switch (event) {
    case Event::connect:
      socket->onConnect = handler;
      break;
    case Event::request:
      socket->onConnectionRequest = handler;
      break;
    case Event::data:
      socket->onDataArrival = handler;
      break;
    case Event::sent:
      socket->onConnect = [this] { socket->SendData("greeting"); };
      socket->onSendComplete = handler;
      break;
    case Event::close:
      socket->onClose = handler;
      break;
    case Event::error:
      socket->onError = handler;
      break;
  }
  socket->HoldBackUnfinishedLine(event == Event::data ? 5ms : 0ms);
  provoke(event);
  ASSERT_TRUE(run([&] { return calls > 0; }, kPatience));
  if (deed == Deed::connectAgain) {
    ASSERT_TRUE(run([&] { return socket->State() == SocketState::connected; }, kPatience));
    RawPeer next = other.accept();
    next.endSending();
    ASSERT_TRUE(run([&] { return socket->State() == SocketState::peerClosing; }, kPatience));
  }
  run([] { return false; }, 10ms);
  // Two requests wait, and the connection made again ends like the first one.
  const bool twice = event == Event::request ? deed == Deed::turnTheLoop || deed == Deed::fail
                                             : event == Event::close && deed == Deed::connectAgain;
  EXPECT_EQ(calls, twice ? 2 : 1);
  if (deed == Deed::close) {
    EXPECT_EQ(socket->State(), SocketState::closed);
  }
}

INSTANTIATE_TEST_SUITE_P(Each, SocketHandler,
                         ::testing::Combine(::testing::ValuesIn(kEvents),
                                            ::testing::ValuesIn(kDeeds)),
                         [](const auto& each) {
                           return std::string(std::get<0>(each.param).second) + "_" +
                                  std::get<1>(each.param).second;
                         });

}  // namespace
}  // namespace kelvaron::testing
