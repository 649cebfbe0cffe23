// Measuring the delay to another user.
#include "peer/ping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/peer/two_desks.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Echoes whose outcomes the test tells.
class ScriptedEchoes : public EchoPort {
 public:
  struct Sent {
    std::uint32_t address;
    std::string data;
    std::chrono::milliseconds timeOut;
    Done done;
    std::weak_ptr<int> alive;
  };
  std::unique_ptr<Echo> send(std::uint32_t address, std::string_view data,
                             std::chrono::milliseconds timeOut, Done done) override {
    struct Alive : Echo {
      std::shared_ptr<int> token = std::make_shared<int>(0);
    };
    auto made = std::make_unique<Alive>();
    sent.push_back({address, std::string(data), timeOut, std::move(done), made->token});
    return made;
  }
  std::deque<Sent> sent;
};

class Ping : public TwoDesks {
 protected:
  void SetUp() override {
    TwoDesks::SetUp();
    ann.echoes = &echoes;
  }
  Pingme& form() { return ann.client->form<Pingme>(); }
  void open(const std::string& line = "THEPING\t10.1.2.3\tbob\r\n") {
    annsServer.say(line);
    ASSERT_TRUE(until([&] { return ann.shows<Pingme>(); }));
  }
  void tell(const EchoOutcome& outcome) {
    const auto done = echoes.sent.back().done;
    done(outcome);
  }
  ScriptedEchoes echoes;
};

TEST(AddressToLong, Cases) {
  const std::pair<const char*, std::uint32_t> cases[] = {{"1.2.3.4", 0x04030201},
                                                         {"255.255.255.255", 0xFFFFFFFF},
                                                         {"300.0.0.1", 0x0100002C},
                                                         {"", 0},
                                                         {"Label3", 0},
                                                         {"1.2.3", 0},
                                                         {"1.2.3.4.5", 0},
                                                         {"1..3.4", 0},
                                                         {"1.2.3.4 ", 0},
                                                         {"-1.2.3.4", 0},
                                                         {"1.2.3.x", 0},
                                                         {"::1", 0},
                                                         {"1.2.3.4.", 0},
                                                         {"1.2.3.99999999999", 0}};
  for (const auto& [text, number] : cases) EXPECT_EQ(addressToLong(text), number) << text;
}

TEST_F(Ping, AskingAndAnswering) {
  auto& list = ann.room().List1;
  for (const char* entry : {"bob[AW]", "cy[IG]"}) list.AddItem(entry);
  for (int index = 0; index < 2; ++index) {
    selectOnly(list, index);
    ann.raise(ann.room().mnuPing.Click);
  }
  ASSERT_TRUE(until([&] { return !annsServer.lines.empty(); }));
  EXPECT_THAT(annsServer.lines, ElementsAre("PINGUSER\tbob[AW]\tann"));
  ASSERT_EQ(ann.boxes.size(), 1U);
  EXPECT_EQ(ann.boxes[0].text,
            "You may not ping a user that is currently in a game. Try when the user returns");
  bobsServer.say("PING\tann\r\n");
  ASSERT_TRUE(until([&] { return !bobsServer.lines.empty(); }));
  EXPECT_THAT(bobsServer.lines, ElementsAre("RETURNPING\t127.0.0.1\tbob\tann"));
  EXPECT_THAT(bob.boxes, IsEmpty());
}

TEST_F(Ping, FormAsItOpensAndTicks) {
  open();
  EXPECT_EQ(form().Label2.Caption.get(), "bob");
  EXPECT_EQ(form().Label3.Caption.get(), "10.1.2.3");
  EXPECT_EQ(form().Caption.get(), "bob's Ping");
  EXPECT_EQ(form().Label1.Caption.get(), "");
  EXPECT_TRUE(form().Timer1.Enabled);
  EXPECT_EQ(form().Timer1.Interval.get(), 1000);
  // The echo of the loading went nowhere, and its outcome is nobody's.
  ASSERT_EQ(echoes.sent.size(), 1U);
  EXPECT_EQ(echoes.sent[0].address, 0U);
  tell({});
  EXPECT_EQ(form().Label1.Caption.get(), "");

  ann.raise(form().Timer1.Tick);
  ASSERT_EQ(echoes.sent.size(), 2U);
  EXPECT_EQ(echoes.sent[1].address, 0x0302010AU);
  EXPECT_EQ(echoes.sent[1].data, "Echo This");
  EXPECT_EQ(echoes.sent[1].timeOut, std::chrono::milliseconds(200));
  const std::pair<EchoOutcome, const char*> outcomes[] = {
      {{EchoOutcome::Kind::replied, 42, ""}, "42 ms"},
      {{EchoOutcome::Kind::noReply, 0, ""}, "No reply"},
      {{EchoOutcome::Kind::replied, 0, ""}, "0 ms"},
      {{EchoOutcome::Kind::refused, 0, "The network cannot be reached"},
       "The network cannot be reached"},
  };
  for (const auto& [outcome, text] : outcomes) {
    ann.raise(form().Command1.Click);
    tell(outcome);
    EXPECT_EQ(form().Label1.Caption.get(), text);
  }
  EXPECT_TRUE(form().Timer1.Enabled);
}

TEST_F(Ping, AnotherUserTakesTheFormOver) {
  open();
  ann.raise(form().Timer1.Tick);
  annsServer.say("THEPING\t10.9.9.9\tcy\r\n");
  ASSERT_TRUE(until([&] { return form().Caption.get() == "cy's Ping"; }));
  tell({EchoOutcome::Kind::replied, 7, ""});
  EXPECT_EQ(form().Label1.Caption.get(), "") << "the time of the one before is no longer told";
  ann.raise(form().Timer1.Tick);
  EXPECT_EQ(echoes.sent.back().address, 0x0909090AU);
}

TEST_F(Ping, ClosedFormEndsItsEcho) {
  open();
  ann.raise(form().Timer1.Tick);
  EXPECT_FALSE(echoes.sent.back().alive.expired());
  ann.raise(form().Command2.Click);
  EXPECT_EQ(ann.client->loadedForm<Pingme>(), nullptr);
  EXPECT_TRUE(echoes.sent.back().alive.expired());
  open("THEPING\t10.1.1.1\tcy\r\n");
  EXPECT_EQ(form().Label2.Caption.get(), "cy");
}

TEST_F(Ping, LinesThatAreTooShort) {
  annsServer.say("THEPING\t10.1.2.3\r\nAnnounce\tlost\r\n");
  annsServer.say("");
  ASSERT_TRUE(until([&] {
    annsServer.say("Announce\tnext\r\n");
    return ann.chat().find("next") != std::string::npos;
  }));
  EXPECT_EQ(ann.client->loadedForm<Pingme>(), nullptr);
  annsServer.say("Message\tx: \ty\r\nTHEPING\t10.1.2.3\r\n");
  ASSERT_TRUE(until([&] { return ann.shows<Pingme>(); }));
  EXPECT_EQ(form().Label3.Caption.get(), "10.1.2.3");
  EXPECT_EQ(form().Label2.Caption.get(), "Player Name : ");
}

TEST_F(Ping, WhatWasAskedForTakesTheKeyboardIfNothingWasTypedSince) {
  struct Window : FormWindow {
    void activate() override { told += "active "; }
    void comeQuietly() override { told += "quiet "; }
    void popUp(MenuItem& /*menu*/) override {}
    std::string told;
  };
  std::uint64_t keys = 5;
  ann.client->keysTyped = [&] { return keys; };
  annsServer.say("Userscl\r\nUsers\tbob\r\n");
  ASSERT_TRUE(until([&] { return ann.room().List1.ListCount() == 1; }));
  selectOnly(ann.room().List1, 0);
  struct Case {
    bool asks;
    int typed;
    const char* comes;
  };
  for (const Case& each : {Case{true, 0, "active "}, Case{true, 1, "quiet "},
                           Case{false, 0, "quiet "}, Case{true, 0, "active "}}) {
    if (each.asks) ann.raise(ann.room().mnuPing.Click);
    keys += static_cast<std::uint64_t>(each.typed);
    form().Visible = false;
    Window window;
    form().window = &window;
    annsServer.say("THEPING\t10.1.2.3\tbob\r\n");
    EXPECT_TRUE(until([&] { return !window.told.empty(); }));
    EXPECT_EQ(window.told, each.comes);
    form().window = nullptr;
  }
}

TEST_F(Ping, RealEchoOfThisMachine) {
  ann.echoes = &ann.nativeEcho;
  ann.runTimers();
  open("THEPING\t127.0.0.1\tbob\r\n");
  ASSERT_TRUE(until([&] { return !form().Label1.Caption.get().empty(); }));
  const std::string shown = form().Label1.Caption;
  if (shown.starts_with("This system permits no pings")) GTEST_SKIP() << shown;
  EXPECT_TRUE(until([&] { return form().Label1.Caption.get().ends_with(" ms"); })) << shown;
}

}  // namespace
}  // namespace kelvaron::testing
