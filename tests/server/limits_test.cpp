// What keeps one client, or many, from harming the room.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "server/source.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

const std::string kLong = "PM\tbob\t" + std::string(60'000, 'x') + "\talice";
const std::string kBobIsGone = "Announce\t[Server] bob has left Kelvaron";

void sendTimes(Peer& peer, int times, const std::string& line) {
  for (int i = 0; i < times; ++i) peer.send(line);
}

std::string toBob(int number) { return "PM\tbob\t" + std::to_string(number) + "\tx"; }

TEST(Limits, ALineTooLongDropsTheClientAloneWithANotice) {
  TwoUsers room({{&Settings::lineLimit, 1000}});
  const std::string head = "Message\talice: \t";
  const std::string longest = head + std::string(1000 - head.size(), 'x');
  room.alice.send(longest);
  EXPECT_EQ(room.alice.sentTo(room.bob), Lines{longest});
  room.alice.sendRaw(longest + "y");  // no end in sight
  EXPECT_TRUE(room.alice.gets(refusal("Your line was too long. You are disconnected.")));
  room.alice.sendRaw("\r\nMessage\talice: \tafter\r\n" + std::string(100'000, 'z'));
  EXPECT_TRUE(room.alice.isClosed());
  EXPECT_EQ(room.bob.lines(), Lines{});
  Peer stranger(room.running.port());
  stranger.sendRaw(longest + "y");
  EXPECT_TRUE(stranger.isClosed());
  EXPECT_EQ(room.bob.lines(true), Lines{}) << "one farewell, read already; none of a stranger";
  Peer carol(room.running.port(), "carol");
  EXPECT_TRUE(carol.getsList({"bob", "carol"}));
}

TEST(Limits, AFloodIsSlowedDownAndLosesNothing) {
  TwoUsers room({{&Settings::burstLines, 20}, {&Settings::linesPerSecond, 50}});
  const auto start = steady_clock::now();
  for (int i = 0; i < 60; ++i) room.alice.send(toBob(i));
  Peer carol(room.running.port(), "carol");
  carol.lines();
  EXPECT_LT(steady_clock::now() - start, milliseconds(500)) << "the others don't wait";
  for (int i = 0; i < 60; ++i) ASSERT_TRUE(room.bob.gets("PM\talice\t" + std::to_string(i)));
  EXPECT_TRUE(room.running.logs("alice at 127.0.0.1 is slowed down: too many lines"));
  // 41 lines above the burst at 50 a second, one of the burst being the login.
  EXPECT_GT(steady_clock::now() - start, milliseconds(700));
}

// Whoever reconnects goes on where the address has stopped; two addresses of this machine are two.
TEST(Limits, TheAllowanceIsTheAddresss) {
  TwoUsers room(
      {{&Settings::localTimes, 1}, {&Settings::burstLines, 50}, {&Settings::linesPerSecond, 50}});
  const auto start = steady_clock::now();
  for (int i = 0; i < 10; ++i) {
    const std::string nick = "user" + std::to_string(i);
    Peer again(room.running.port(), nick);
    for (int line = 0; line < 9; ++line) again.send(toBob(line));
    ASSERT_TRUE(room.bob.gets("PM\t" + nick + "\t8"));
  }
  // 100 lines of theirs and two logins: 52 beyond the burst.
  EXPECT_GT(steady_clock::now() - start, milliseconds(950));
}

TEST(Sources, AreForgottenWithWhatWasNotTold) {
  const Settings settings;
  Sources sources(settings);
  sources.of("10.0.0.1")->refusalsNotLogged = 2;
  sources.of("10.0.0.2")->refusalsNotLogged = 3;
  sources.of("10.0.0.3")->connections = 1;
  sources.of("10.0.0.3")->refusalsNotLogged = 4;
  const Sources::Untold untold = sources.sweep(Clock::now());
  EXPECT_EQ(untold.addresses, 2);
  EXPECT_EQ(untold.refusals, 5);
  EXPECT_EQ(sources.of("10.0.0.1")->refusalsNotLogged, 0);
  EXPECT_EQ(sources.of("10.0.0.3")->refusalsNotLogged, 4);
}

TEST(Limits, LoginsWaitTheirTurn) {
  const TwoUsers room({{&Settings::localTimes, 1},
                       {&Settings::burstLogins, 4},
                       {&Settings::loginsPerMinute, 240},
                       {&Settings::loginTimeoutMs, 600}});
  const auto start = steady_clock::now();
  for (const char* nick : {"carol", "dave", "eve", "fred"}) Peer(room.running.port(), nick);
  EXPECT_GT(steady_clock::now() - start, milliseconds(450))
      << "two beyond the burst, at 4 a second";
  std::vector<std::unique_ptr<Peer>> crowd;
  for (int i = 0; i < 8; ++i) {
    crowd.push_back(std::make_unique<Peer>(room.running.port()));
    crowd.back()->logIn("crowd" + std::to_string(i));
  }
  const std::string tooMany =
      refusal("There are too many logins from your address. Try again later.");
  EXPECT_GE(std::ranges::count_if(crowd, [&](auto& each) { return each->next() == tooMany; }), 4);
}

TEST(Limits, ConnectionsInAllWhereTheSilentGiveWayToNewcomers) {
  TwoUsers room({{&Settings::connections, 4}});
  Peer oldest(room.running.port());
  Peer younger(room.running.port());
  {
    const Peer carol(room.running.port(), "carol");
    EXPECT_TRUE(oldest.isClosed());
    younger.logIn("dave");
    EXPECT_TRUE(younger.gets("Users\tdave"));
    Peer fifth(room.running.port());
    EXPECT_TRUE(fifth.gets(refusal("The server is full. Try again later.")));
    EXPECT_TRUE(fifth.isClosed());
  }
  ASSERT_TRUE(room.alice.gets("Announce\t[Server] carol has left Kelvaron"));
  const Peer again(room.running.port(), "eve");
}

TEST(Limits, TheSilentGiveWayHoweverLongTheyAreSilent) {
  TemporaryFolder folder;
  const RunningServer running(folder.path(), {{&Settings::connections, 2}});
  Peer silent(running.port());
  const Peer alice(running.port(), "alice");
  std::this_thread::sleep_for(milliseconds(1100));
  const Peer bob(running.port(), "bob");
  EXPECT_TRUE(silent.isClosed());
}

TEST(Limits, ListsKeepToTheirBytes) {
  TwoUsers room({{&Settings::listBytesPerSecond, 1024}});
  const auto start = steady_clock::now();
  std::size_t bytes = 0;
  int changes = 0;
  while (steady_clock::now() - start < milliseconds(700)) {
    std::this_thread::sleep_for(milliseconds(1));  // or the changes use their allowance up
    room.alice.send(++changes % 2 == 0 ? "RETURN\talice" : "INGAME\talice");
    for (const std::string& line : room.bob.lines(true)) {
      if (line.starts_with("Users")) bytes += line.size() + 2;
    }
  }
  const std::chrono::duration<double> time = steady_clock::now() - start;
  EXPECT_GT(changes, 100);
  EXPECT_LT(static_cast<double>(bytes), 1024 * time.count() + 100);
  room.alice.sendRaw("[CS]\talice\r\nRETURN\talice\r\n");
  EXPECT_TRUE(room.bob.getsList({"alice[CS]", "bob"}));
}

// The client closes and connects again at once, while its lines wait for their turn.
TEST(Limits, WhoComesBackAtOnceIsNotTwo) {
  TwoUsers room({{&Settings::burstLines, 10}, {&Settings::linesPerSecond, 40}});
  for (int i = 0; i < 50; ++i) room.alice.send(toBob(i));
  // A close with unread lines here would reset the connection, and the system drop what is on its
  // way.
  room.alice.socket().shutdown(asio::ip::tcp::socket::shutdown_send);
  EXPECT_EQ(Peer::loginAnswer(room.running.port(), "alice"), "Userscl");
  EXPECT_TRUE(room.bob.gets("PM\talice\t49")) << "and no line is lost";
  EXPECT_EQ(Peer::loginAnswer(room.running.port(), "bob"), "DOUBLE");
}

TEST(Limits, WhoTellsNothingOrTakesNothingIsDropped) {
  constexpr long kMuch = 100'000'000;
  for (const auto& [stall, queue, memory] :
       {std::tuple(300L, kMuch, kMuch), std::tuple(30'000L, 100'000L, kMuch),
        std::tuple(30'000L, kMuch, 1'000'000L)}) {
    TwoUsers room({{&Settings::stallTimeoutMs, stall},
                   {&Settings::queueLimit, queue},
                   {&Settings::memoryLimit, memory},
                   {&Settings::loginTimeoutMs, 100}});
    Peer silent(room.running.port());
    EXPECT_TRUE(silent.isClosed());
    sendTimes(room.alice, 300, kLong);
    EXPECT_TRUE(room.alice.gets(kBobIsGone)) << stall << ' ' << queue;
    EXPECT_TRUE(room.alice.getsList({"alice"}));
  }
}

TEST(Limits, UserListsDoNotPileUpForAClientThatDoesNotRead) {
  TwoUsers room({{&Settings::queueLimit, 100'000'000}});
  // More than the sockets between bob and the server hold, so that the rest waits in the server.
  sendTimes(room.alice, 200, kLong);
  for (int i = 0; i < 12; ++i) {
    room.alice.send(i % 2 == 0 ? "INGAME\talice" : "RETURN\talice");
    ASSERT_TRUE(room.alice.getsList({i % 2 == 0 ? "alice[IG]" : "alice", "bob"}));
  }
  room.alice.send("[AW]\talice");
  ASSERT_TRUE(room.alice.getsList({"alice[AW]", "bob"}));
  const Lines all = room.bob.lines(true);
  EXPECT_EQ(std::ranges::count_if(all, [](auto& line) { return line.starts_with("PM\t"); }), 200);
  // One list may have come before the sockets were full.
  EXPECT_LE(std::ranges::count(all, "Userscl"), 3);
  EXPECT_EQ(Lines(all.end() - 3, all.end()), (Lines{"Userscl", "Users\talice[AW]", "Users\tbob"}));
}

TEST(Limits, NoDescriptorsLeftIsSurvived) {
  TwoUsers room;
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  // Sockets that are made, but not connected, before the descriptors run out.
  std::array<int, 3> waiting{};
  for (int& each : waiting) each = ::socket(AF_INET, SOCK_STREAM, 0);
  rlimit none = before;
  none.rlim_cur = static_cast<rlim_t>(waiting.back()) + 1;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  const asio::ip::tcp::endpoint server(asio::ip::address_v4::loopback(), room.running.port());
  for (const int descriptor : waiting) {
    EXPECT_EQ(::connect(descriptor, server.data(), static_cast<socklen_t>(server.size())), 0);
  }
  EXPECT_EQ(room.alice.sentTo(room.bob), Lines{});
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  Peer carol(room.running.port(), "carol");
  EXPECT_TRUE(carol.getsList({"alice", "bob", "carol"}));
  for (const int descriptor : waiting) ::close(descriptor);
}

}  // namespace
}  // namespace kelvaron::server
