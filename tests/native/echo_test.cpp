// Echoes by each way that this system permits.
#include "native/echo.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "native/echo_packet.h"
#include "tests/support/poll_loop.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {
namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t kLoopback = 0x0100007F;
// Of a class that is given to nobody.
constexpr std::uint32_t kNobody = 0x010000F0;
constexpr milliseconds kTimeOut(200);

class Echoes : public ::testing::Test {
 protected:
  EchoOutcome outcomeOf(NativeEcho& echo, std::uint32_t address) {
    bool told = false;
    EchoOutcome outcome;
    pending = echo.send(address, "Echo This", kTimeOut, [&](const EchoOutcome& told_) {
      told = true;
      outcome = told_;
      pending.reset();
    });
    EXPECT_FALSE(told);
    EXPECT_TRUE(loop.runUntil([&] { return told; }, std::chrono::seconds(5)));
    return outcome;
  }
  /// A program in the place of ping.
  std::string program(const std::string& script) {
    const auto path = folder.path() / "ping";
    std::ofstream(path) << "#!/bin/sh\n" << script << '\n';
    ::chmod(path.c_str(), S_IRWXU);
    return path.string();
  }

  PollLoop loop;
  TemporaryFolder folder;
  std::unique_ptr<Echo> pending;
};

TEST_F(Echoes, EachWayReachesThisMachine) {
  int permitted = 0;
  for (const EchoWay way : {EchoWay::datagram, EchoWay::raw, EchoWay::program}) {
    NativeEcho echo(loop, {way});
    for (int round = 0; round < 3; ++round) {
      const EchoOutcome outcome = outcomeOf(echo, kLoopback);
      if (outcome.kind == EchoOutcome::Kind::refused) {
        EXPECT_NE(outcome.reason, "");
        break;
      }
      if (way == EchoWay::program && outcome.kind == EchoOutcome::Kind::noReply) continue;
      EXPECT_EQ(outcome.kind, EchoOutcome::Kind::replied) << static_cast<int>(way);
      EXPECT_LT(outcome.milliseconds, 200U);
      ++permitted;
    }
  }
  if (permitted == 0) GTEST_SKIP() << "this system permits no pings";
}

TEST_F(Echoes, NobodyNeverReplies) {
  NativeEcho echo(loop);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(outcomeOf(echo, 0).kind, EchoOutcome::Kind::noReply);
  EXPECT_NE(outcomeOf(echo, kNobody).kind, EchoOutcome::Kind::replied);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST_F(Echoes, SystemWithoutAnyWaySaysWhatToChange) {
  NativeEcho echo(loop, {EchoWay::program}, "");
  const EchoOutcome outcome = outcomeOf(echo, kLoopback);
  EXPECT_EQ(outcome.kind, EchoOutcome::Kind::refused);
  EXPECT_NE(outcome.reason.find("net.ipv4.ping_group_range"), std::string::npos);
}

TEST_F(Echoes, ProgramsThatPingInTheirOwnWay) {
  const std::string kHeading = "echo 'PING 127.0.0.1 (127.0.0.1) 9(37) bytes of data.';";
  using Kind = EchoOutcome::Kind;
  struct Case {
    std::string script;
    Kind kind;
    std::string reason;
  };
  const Case cases[] = {
      {kHeading + "echo '1 packets transmitted, 1 received, 0% packet loss'", Kind::replied, ""},
      {kHeading + "echo '1 packets transmitted, 0 received, 100% packet loss'", Kind::noReply, ""},
      {kHeading + "echo '1 packets transmitted, 1 packets received, 0% packet loss'", Kind::replied,
       ""},
      {kHeading + "sleep 3", Kind::noReply, ""},
      {"echo 'ping: socket: Operation not permitted' >&2; exit 2", Kind::refused,
       "ping: socket: Operation not permitted"},
      {"exit 2", Kind::refused, ""},
      {"yes", Kind::refused, "y"},
  };
  for (const Case& each : cases) {
    NativeEcho echo(loop, {EchoWay::program}, program(each.script));
    const EchoOutcome outcome = outcomeOf(echo, kLoopback);
    EXPECT_EQ(outcome.kind, each.kind) << each.script;
    EXPECT_EQ(outcome.reason, each.reason) << each.script;
  }
  NativeEcho missing(loop, {EchoWay::program}, "/nowhere/ping");
  EXPECT_EQ(outcomeOf(missing, kLoopback).kind, Kind::refused);
}

TEST_F(Echoes, ProgramGetsWordsAndNoShell) {
  const auto words = (folder.path() / "words").string();
  NativeEcho echo(loop, {EchoWay::program},
                  program("printf '%s\\n' \"$@\" > " + words + "; echo PING 1 received"));
  EXPECT_EQ(outcomeOf(echo, 0x04030201).kind, EchoOutcome::Kind::replied);
  std::ifstream file(words);
  const std::string all{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(all, "-n\n-q\n-c1\n-W1\n-s9\n-p\n4563686f2054686973\n1.2.3.4\n");
}

TEST_F(Echoes, DestroyedIsToldNoMore) {
  bool told = false;
  for (const EchoWay way : {EchoWay::datagram, EchoWay::raw, EchoWay::program}) {
    NativeEcho echo(loop, {way});
    echo.send(kLoopback, "x", kTimeOut, [&](const EchoOutcome&) { told = true; }).reset();
  }
  loop.runUntil([] { return false; }, milliseconds(300));
  EXPECT_FALSE(told);
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
  const std::string packet = "\x46" + std::string(23, 'h') + reply;
  EXPECT_EQ(withoutIpHead(packet), reply);
  for (const std::string& cut : {std::string(), std::string("\x46"), std::string(1, '\0')}) {
    EXPECT_EQ(withoutIpHead(cut), "");
  }
}

}  // namespace
}  // namespace kelvaron::testing
