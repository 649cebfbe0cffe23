// Echoes by each way that this system permits, and the machine's own address.
#include <optional>
#include <tuple>

#include "native/endpoint.h"
#include "native/local_host.h"
#include "native/posix/echo_packet.h"
#include "native/posix/socket_echo.h"
#include "tests/native/native_test.h"
#include "tests/support/poll_loop.h"

namespace kelvaron::testing {
namespace {

using namespace std::chrono_literals;
using Outcome = EchoOutcome::Kind;

constexpr std::uint32_t kLoopback = 0x0100007F;
// Of a class that is given to nobody.
constexpr std::uint32_t kNobody = 0x010000F0;
constexpr EchoWay kWays[] = {EchoWay::datagram, EchoWay::raw, EchoWay::program};

class Echoes : public DiskTest {
 protected:
  EchoOutcome outcomeOf(NativeEcho& echo, std::uint32_t address) {
    std::optional<EchoOutcome> outcome;
    pending = echo.send(address, "Echo This", 200ms, [&](const EchoOutcome& told) {
      outcome = told;
      pending.reset();
    });
    EXPECT_FALSE(outcome);
    EXPECT_TRUE(loop.runUntil([&] { return outcome.has_value(); }, 5s));
    return outcome.value_or(EchoOutcome{});
  }
  /// With a program in the place of ping.
  EchoOutcome outcomeBy(const std::string& program) {
    NativeEcho echo(loop, {EchoWay::program}, program);
    return outcomeOf(echo, kLoopback);
  }

  PollLoop loop;
  std::unique_ptr<Echo> pending;
};

TEST_F(Echoes, EachWayReachesThisMachine) {
  int permitted = 0;
  for (const EchoWay way : kWays) {
    NativeEcho echo(loop, {way});
    for (int round = 0; round < 3; ++round) {
      const EchoOutcome outcome = outcomeOf(echo, kLoopback);
      if (outcome.kind == Outcome::refused) {
        EXPECT_NE(outcome.reason, "");
        break;
      }
      if (way == EchoWay::program && outcome.kind == Outcome::noReply) continue;
      EXPECT_EQ(outcome.kind, Outcome::replied) << static_cast<int>(way);
      EXPECT_LT(outcome.milliseconds, 200U);
      ++permitted;
    }
  }
  if (permitted == 0) GTEST_SKIP() << "this system permits no pings";
}

TEST_F(Echoes, NobodyNeverReplies) {
  NativeEcho echo(loop);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(outcomeOf(echo, 0).kind, Outcome::noReply);
  EXPECT_NE(outcomeOf(echo, kNobody).kind, Outcome::replied);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST_F(Echoes, ProgramsThatPingInTheirOwnWay) {
  const std::string kHeading = "echo 'PING 127.0.0.1 (127.0.0.1) 9(37) bytes of data.';";
  const std::tuple<std::string, Outcome, std::string> cases[] = {
      {kHeading + "echo '1 packets transmitted, 1 received, 0% packet loss'", Outcome::replied, ""},
      {kHeading + "echo '1 packets transmitted, 0 received, 100% packet loss'", Outcome::noReply,
       ""},
      {kHeading + "echo '1 packets transmitted, 1 packets received'", Outcome::replied, ""},
      {kHeading + "sleep 3", Outcome::noReply, ""},
      {"echo 'ping: not permitted' >&2; exit 2", Outcome::refused, "ping: not permitted"},
      {"exit 2", Outcome::refused, ""},
      {"yes", Outcome::refused, "y"},
      {"printf '%s\\n' \"$@\" > " + placed("@/words; echo PING 1 received"), Outcome::replied, ""},
  };
  for (const auto& [script, kind, reason] : cases) {
    SCOPED_TRACE(script);
    make("ping", "#!/bin/sh\n" + script + '\n', fs::perms::owner_all);
    const EchoOutcome outcome = outcomeBy((base / "ping").string());
    EXPECT_EQ(outcome.kind, kind);
    EXPECT_EQ(outcome.reason, reason);
  }
  EXPECT_EQ(contents("words"), "-n\n-q\n-c1\n-W1\n-s9\n-p\n4563686f2054686973\n127.0.0.1\n");
  EXPECT_EQ(outcomeBy("/nowhere/ping").kind, Outcome::refused);
  const EchoOutcome noWay = outcomeBy("");
  EXPECT_EQ(noWay.kind, Outcome::refused);
  EXPECT_NE(noWay.reason.find("net.ipv4.ping_group_range"), std::string::npos);
}

TEST_F(Echoes, DestroyedAreToldNoMore) {
  for (const EchoWay way : kWays) {
    NativeEcho(loop, {way}).send(kLoopback, "x", 200ms, [](const auto&) { FAIL(); }).reset();
  }
  NativeLocalHost(loop).localHostAddress([](const auto&) { FAIL(); }).reset();
  loop.runUntil([] { return false; }, 300ms);
}

TEST(EchoPacket, OnlyTheReplyToTheRequest) {
  const EchoMark mark{0x1234, 7};
  const std::string request = echoRequest(mark, "Echo This");
  // Checked against the sum of the words: all ones with the checksum in place.
  unsigned sum = 0;
  for (std::size_t index = 0; index < request.size(); ++index) {
    const unsigned byte = static_cast<unsigned char>(request[index]);
    sum += index % 2 == 0 ? byte << 8U : byte;
  }
  EXPECT_EQ((sum & 0xFFFFU) + (sum >> 16U), 0xFFFFU);
  std::string reply = request;
  reply[0] = 0;
  EXPECT_TRUE(isEchoReply(reply, mark, "Echo This", false));
  EXPECT_FALSE(isEchoReply(request, mark, "Echo This", false)) << "the request itself";
  EXPECT_FALSE(isEchoReply(reply, {0x1235, 7}, "Echo This", false));
  EXPECT_TRUE(isEchoReply(reply, {0x1235, 7}, "Echo This", true));
  EXPECT_FALSE(isEchoReply(reply, {0x1234, 8}, "Echo This", true));
  EXPECT_FALSE(isEchoReply(reply, mark, "Echo that", true));
  for (std::size_t length = 0; length < reply.size(); ++length) {
    EXPECT_FALSE(isEchoReply(reply.substr(0, length), mark, "Echo This", true));
  }
  EXPECT_EQ(withoutIpHead("\x46" + std::string(23, 'h') + reply), reply);
  for (const std::string& cut : {std::string(), std::string("\x46"), std::string(1, '\0')}) {
    EXPECT_EQ(withoutIpHead(cut), "");
  }
}

TEST(LocalHost, AnswersWithAnAddressOrNothing) {
  PollLoop loop;
  std::optional<LocalHostAnswer> answer;
  std::unique_ptr<LocalHostLookUp> pending;
  pending = NativeLocalHost(loop).localHostAddress([&](const LocalHostAnswer& told) {
    answer = told;
    pending.reset();
  });
  EXPECT_FALSE(answer);
  ASSERT_TRUE(loop.runUntil([&] { return answer.has_value(); }, 30s));
  EXPECT_EQ(answer->nameError, 0);
  EXPECT_TRUE(answer->address.empty() || numericEndpoint(answer->address, 0)) << answer->address;
}

}  // namespace
}  // namespace kelvaron::testing
