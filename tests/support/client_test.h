// A client that is logged in as "bob" on a chat server that the test plays; and its login window
// for whoever wants to begin there.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "session/dispatch.h"
#include "tests/support/line_server.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {

/// A client that has not begun yet.
class FreshClientTest : public ::testing::Test {
 protected:
  frmMain& room() { return desktop.room(); }
  template <class F>
  F& form() {
    return desktop.client->form<F>();
  }
  void click(CommandButton& button) { desktop.raise(button.Click); }
  /// Says lines, each with its end, and waits until all are handled.
  void say(const std::string& lines) {
    const std::string mark = "mark" + std::to_string(++marks_);
    server.say(lines + "PLAYSOUND\t" + mark + "\r\n");
    ASSERT_TRUE(desktop.until([&] { return std::ranges::count(desktop.sounds, mark) == 1; }));
    std::erase(desktop.sounds, mark);
  }
  /// What the server has received since the last call: waits for a line.
  std::vector<std::string> received() { return received(server.lines.size() + 1); }
  /// The same, but waits until there are so many, with those that came before.
  std::vector<std::string> received(std::size_t count) {
    desktop.until([&] { return server.lines.size() >= count; });
    return take();
  }
  std::vector<std::string> take() { return std::exchange(server.lines, {}); }
  /// What the server has received by now; a line sent last tells when that is all.
  std::vector<std::string> sent() {
    desktop.client->send("fence\r\n");
    EXPECT_TRUE(
        desktop.until([&] { return !server.lines.empty() && server.lines.back() == "fence"; }));
    server.lines.pop_back();
    return take();
  }
  bool offline() { return desktop.client->sckClient().State() != SocketState::connected; }
  void hangUp() {
    server.hangUp();
    ASSERT_TRUE(desktop.until([&] { return offline(); }));
  }
  std::vector<std::string> boxTexts() {
    std::vector<std::string> texts;
    for (const Box& box : std::exchange(desktop.boxes, {})) texts.push_back(box.text);
    return texts;
  }

  PollLoop loop;
  LineServer server{loop};
  TestDesktop desktop{loop, server.port()};

 private:
  int marks_ = 0;
};

/// In the room; the server has seen the login's two lines and forgotten them.
class ClientTest : public FreshClientTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.logIn("bob"));
    ASSERT_TRUE(desktop.until([&] { return server.lines.size() == 2; }));
    take();
    desktop.sounds.clear();
  }
  /// One arrival with just these bytes.
  void arrive(std::string_view bytes) {
    desktop.edge.runUnasked([&] {
      ArrivalRead read{.lines = bytes};
      handleArrival(*desktop.client, read, inboundTable());
    });
  }
};

}  // namespace kelvaron::testing
