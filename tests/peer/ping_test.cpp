// Measuring the delay to another user.
#include "peer/ping.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/client_test.h"

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

class Ping : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    desktop.echoes = &echoes;
  }
  Pingme& form() { return ClientTest::form<Pingme>(); }
  void tell(const EchoOutcome& outcome) { echoes.sent.back().done(outcome); }
  std::string shown() { return form().Label1.Caption; }
  void ask(const std::string& entry) {
    room().List1.Clear();
    room().List1.AddItem(entry);
    selectOnly(room().List1, 0);
    desktop.raise(room().mnuPing.Click);
  }
  ScriptedEchoes echoes;
};

TEST(AddressToLong, Cases) {
  EXPECT_EQ(addressToLong("1.2.3.4"), 0x04030201U);
  EXPECT_EQ(addressToLong("255.255.255.255"), 0xFFFFFFFFU);
  EXPECT_EQ(addressToLong("300.0.0.1"), 0x0100002CU);
  for (const char* none : {"", "Label3", "1.2.3", "1.2.3.4.5", "1..3.4", "1.2.3.4 ", "-1.2.3.4",
                           "1.2.3.x", "::1", "1.2.3.4.", "1.2.3.99999999999"}) {
    EXPECT_EQ(addressToLong(none), 0U) << none;
  }
}

TEST_F(Ping, AskingAndAnswering) {
  for (const char* entry : {"ann[AW]", "cy[IG]"}) room().List1.AddItem(entry);
  for (int index = 0; index < 2; ++index) {
    selectOnly(room().List1, index);
    desktop.raise(room().mnuPing.Click);
  }
  EXPECT_THAT(received(), ElementsAre("PINGUSER\tann[AW]\tbob"));
  EXPECT_THAT(
      boxTexts(),
      ElementsAre(
          "You may not ping a user that is currently in a game. Try when the user returns"));
  arrive("PING\tann\r\n");
  EXPECT_THAT(received(), ElementsAre("RETURNPING\t127.0.0.1\tbob\tann"));
  EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(Ping, FormAsItOpensAndTicks) {
  arrive("THEPING\t10.1.2.3\tann\r\n");
  EXPECT_TRUE(desktop.shows<Pingme>());
  EXPECT_EQ(form().Label2.Caption.get(), "ann");
  EXPECT_EQ(form().Label3.Caption.get(), "10.1.2.3");
  EXPECT_EQ(form().Caption.get(), "ann's Ping");
  EXPECT_EQ(shown(), "");
  EXPECT_TRUE(form().Timer1.Enabled);
  EXPECT_EQ(form().Timer1.Interval.get(), 1000);
  // The echo of the loading went nowhere, and its outcome is nobody's.
  ASSERT_EQ(echoes.sent.size(), 1U);
  EXPECT_EQ(echoes.sent[0].address, 0U);
  tell({});
  EXPECT_EQ(shown(), "");

  desktop.raise(form().Timer1.Tick);
  ASSERT_EQ(echoes.sent.size(), 2U);
  EXPECT_EQ(echoes.sent[1].address, 0x0302010AU);
  EXPECT_EQ(echoes.sent[1].data, "Echo This");
  EXPECT_EQ(echoes.sent[1].timeOut, std::chrono::milliseconds(200));
  using Kind = EchoOutcome::Kind;
  const std::pair<EchoOutcome, const char*> outcomes[] = {{{Kind::replied, 42, ""}, "42 ms"},
                                                          {{Kind::noReply, 0, ""}, "No reply"},
                                                          {{Kind::replied, 0, ""}, "0 ms"},
                                                          {{Kind::refused, 0, "No way"}, "No way"}};
  for (const auto& [outcome, text] : outcomes) {
    click(form().Command1);
    tell(outcome);
    EXPECT_EQ(shown(), text);
  }
  EXPECT_TRUE(form().Timer1.Enabled);
}

TEST_F(Ping, WhoIsMeasuredStaysUntilTheUserAsksForAnother) {
  ask("ann");
  // Another's line is not the answer, and one's own comes to an open form only once.
  arrive("THEPING\t10.7.7.7\tdi\r\n");
  EXPECT_EQ(form().Caption.get(), "di's Ping");
  arrive("THEPING\t10.1.2.3\t\245ann\r\n");
  EXPECT_EQ(form().Label3.Caption.get(), "10.1.2.3");
  desktop.raise(form().Timer1.Tick);
  arrive("THEPING\t10.8.8.8\tann\r\nTHEPING\t10.9.9.9\tcy\r\n");
  click(form().Command1);
  EXPECT_EQ(echoes.sent.back().address, 0x0302010AU);
  ask("cy");
  arrive("THEPING\t10.9.9.9\tcy\r\n");
  EXPECT_EQ(form().Caption.get(), "cy's Ping");
  tell({EchoOutcome::Kind::replied, 7, ""});
  EXPECT_EQ(shown(), "") << "the time of the one before is no longer told";
  desktop.raise(form().Timer1.Tick);
  EXPECT_EQ(echoes.sent.back().address, 0x0909090AU);
  EXPECT_FALSE(echoes.sent.back().alive.expired());
  click(form().Command2);
  EXPECT_EQ(desktop.client->loadedForm<Pingme>(), nullptr);
  EXPECT_TRUE(echoes.sent.back().alive.expired());
}

TEST_F(Ping, LinesThatAreTooShort) {
  arrive("THEPING\t10.1.2.3\r\nAnnounce\tlost\r\n");
  EXPECT_EQ(desktop.chat(), "");
  EXPECT_EQ(desktop.client->loadedForm<Pingme>(), nullptr);
  arrive("Message\tx: \ty\r\nTHEPING\t10.1.2.3\r\n");
  EXPECT_TRUE(desktop.shows<Pingme>());
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
  desktop.client->keysTyped = [&] { return keys; };
  auto time = std::chrono::steady_clock::now();
  desktop.client->now = [&] { return time; };
  // Whom the user asks for, how long ago, and how many keys were typed since.
  for (const auto& [whom, seconds, typed, comes] :
       {std::tuple("ann[AW]", 59, 0U, "active "), std::tuple("ann", 59, 1U, "quiet "),
        std::tuple("", 0, 0U, "quiet "), std::tuple("cy", 0, 0U, "quiet "),
        std::tuple("ann", 61, 0U, "quiet "), std::tuple("ann", 0, 0U, "active ")}) {
    if (*whom != '\0') ask(whom);
    time += std::chrono::seconds(seconds);
    keys += typed;
    form().Visible = false;
    Window window;
    form().window = &window;
    arrive("THEPING\t10.1.2.3\tann\r\n");
    EXPECT_EQ(window.told, comes);
    form().window = nullptr;
  }
}

}  // namespace
}  // namespace kelvaron::testing
