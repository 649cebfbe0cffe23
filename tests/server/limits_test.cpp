// What keeps one client, or many, from harming the room.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(Limits, ALineTooLongDropsTheClientAloneWithANotice) {
  Settings settings = quickSettings();
  settings.lineLimit = 1000;
  TwoUsers room(settings);
  const std::string head = "Message\talice: \t";
  const std::string longest(1000 - head.size(), 'x');
  room.alice.send(head + longest);
  EXPECT_EQ(room.alice.sentTo(room.bob), Lines{head + longest});
  room.alice.sendRaw(head + longest + "y");  // no end in sight
  EXPECT_TRUE(room.alice.gets(
      "STATUSTEXT\t7895295\t[Server] Your line was too long. You are disconnected."));
  room.alice.sendRaw("\r\nMessage\talice: \tafter\r\n" + std::string(100'000, 'z'));
  EXPECT_TRUE(room.alice.isClosed());
  EXPECT_EQ(room.bob.lines(), Lines{});
  EXPECT_EQ(room.bob.lines(true), Lines{}) << "one farewell, read already";
  Peer carol(room.running.port(), "carol");
  EXPECT_TRUE(carol.getsList({"bob", "carol"}));
}

TEST(Limits, AFloodIsSlowedDownAndLosesNothing) {
  Settings settings = quickSettings();
  settings.burstLines = 20;
  settings.linesPerSecond = 50;
  TwoUsers room(settings);
  std::string flood;
  for (int i = 0; i < 60; ++i) flood += "PM\tbob\t" + std::to_string(i) + "\talice\r\n";
  const auto start = steady_clock::now();
  room.alice.sendRaw(flood);
  Peer carol(room.running.port(), "carol");
  carol.lines();
  EXPECT_LT(steady_clock::now() - start, milliseconds(500)) << "the others don't wait";
  for (int i = 0; i < 60; ++i) {
    const std::string line = "PM\talice\t" + std::to_string(i);
    ASSERT_TRUE(room.bob.gets(line)) << line;
  }
  // 41 lines above the burst at 50 a second, one of the burst being the login.
  EXPECT_GT(steady_clock::now() - start, milliseconds(700));
}

// Whoever reconnects goes on where the address has stopped; two addresses of this machine are two.
TEST(Limits, TheAllowanceIsTheAddresss) {
  Settings settings = quickSettings();
  settings.localTimes = 1;
  settings.burstLines = 50;
  settings.linesPerSecond = 50;
  TwoUsers room(settings);
  const auto start = steady_clock::now();
  for (int i = 0; i < 10; ++i) {
    Peer again(room.running.port(), "user" + std::to_string(i));
    for (int line = 0; line < 9; ++line) again.send("PM\tbob\t" + std::to_string(line) + "\tx");
    ASSERT_TRUE(room.bob.gets("PM\tuser" + std::to_string(i) + "\t8"));
  }
  // 100 lines of theirs and two logins: 52 beyond the burst.
  EXPECT_GT(steady_clock::now() - start, milliseconds(950));
}

TEST(Limits, LoginsWaitTheirTurn) {
  Settings settings = quickSettings();
  settings.localTimes = 1;
  settings.burstLogins = 4;
  settings.loginsPerMinute = 240;
  settings.loginTimeoutMs = 600;
  TwoUsers room(settings);
  const auto start = steady_clock::now();
  for (const char* nick : {"carol", "dave", "eve", "fred"}) Peer(room.running.port(), nick);
  EXPECT_GT(steady_clock::now() - start, milliseconds(450))
      << "two beyond the burst, at 4 a second";
  std::vector<std::unique_ptr<Peer>> crowd;
  for (int i = 0; i < 8; ++i) {
    crowd.push_back(std::make_unique<Peer>(room.running.port()));
    crowd.back()->send("Name\tcrowd" + std::to_string(i) + "\t10.0.0.7");
  }
  int refused = 0;
  for (const auto& each : crowd) {
    refused += each->next() ==
               "STATUSTEXT\t7895295\t[Server] There are too many logins from your "
               "address. Try again later.";
  }
  EXPECT_GE(refused, 4);
}

TEST(Limits, TheSilentGiveWayToNewcomers) {
  Settings settings = quickSettings();
  settings.connections = 4;
  TwoUsers room(settings);
  Peer oldest(room.running.port());
  Peer younger(room.running.port());
  Peer carol(room.running.port(), "carol");
  EXPECT_TRUE(oldest.isClosed());
  younger.send("Name\tdave\t10.0.0.7");
  EXPECT_TRUE(younger.gets("Users\tdave"));
}

TEST(Limits, ListsKeepToTheirBytes) {
  Settings settings = quickSettings();
  settings.listBytesPerSecond = 1024;
  TwoUsers room(settings);
  const auto start = steady_clock::now();
  std::size_t bytes = 0;
  int changes = 0;
  while (steady_clock::now() - start < milliseconds(700)) {
    room.alice.send(++changes % 2 == 0 ? "RETURN\talice" : "INGAME\talice");
    for (const std::string& line : room.bob.lines(true)) {
      if (line.starts_with("Users")) bytes += line.size() + 2;
    }
  }
  const std::chrono::duration<double> time = steady_clock::now() - start;
  EXPECT_GT(changes, 100);
  EXPECT_LT(static_cast<double>(bytes), 1024 * time.count() + 100);
  room.alice.send("[CS]\talice");
  room.alice.send("RETURN\talice");
  EXPECT_TRUE(room.bob.getsList({"alice[CS]", "bob"}));
}

// The client closes and connects again at once, while its lines wait for their turn.
TEST(Limits, WhoComesBackAtOnceIsNotTwo) {
  Settings settings = quickSettings();
  settings.burstLines = 10;
  settings.linesPerSecond = 40;
  TwoUsers room(settings);
  for (int i = 0; i < 50; ++i) room.alice.send("PM\tbob\t" + std::to_string(i) + "\talice");
  // A close with unread lines here would reset the connection, and the system drop what is on its
  // way.
  room.alice.socket().shutdown(asio::ip::tcp::socket::shutdown_send);
  Peer again(room.running.port());
  again.send("Name\talice\t10.0.0.7");
  EXPECT_EQ(again.next(), "Userscl");
  EXPECT_TRUE(room.bob.gets("PM\talice\t49")) << "and no line is lost";
  Peer second(room.running.port());
  second.send("Name\tbob\t10.0.0.7");
  EXPECT_EQ(second.next(), "DOUBLE");
}

TEST(Limits, TimeOutsCloseTheSilentAndTheStalled) {
  Settings settings = quickSettings();
  settings.loginTimeoutMs = 100;
  settings.stallTimeoutMs = 300;
  TwoUsers room(settings);
  Peer silent(room.running.port());
  EXPECT_TRUE(silent.isClosed());
  // bob reads nothing while the room talks.
  for (int i = 0; i < 200; ++i) room.alice.send("PM\tbob\t" + std::string(60'000, 'x') + "\talice");
  EXPECT_TRUE(room.alice.gets("Announce\t[Server] bob has left Kelvaron"));
}

TEST(Limits, AClientThatDoesNotReadIsDroppedAtTheLimitOfItsQueue) {
  Settings settings = quickSettings();
  settings.queueLimit = 100'000;
  TwoUsers room(settings);
  const std::string line = "PM\tbob\t" + std::string(60'000, 'x') + "\talice";
  for (int i = 0; i < 300; ++i) room.alice.send(line);
  EXPECT_TRUE(room.alice.gets("Announce\t[Server] bob has left Kelvaron"));
  EXPECT_TRUE(room.alice.getsList({"alice"}));
}

TEST(Limits, UserListsDoNotPileUpForAClientThatDoesNotRead) {
  constexpr int kChanges = 12;
  Settings settings = quickSettings();
  settings.queueLimit = 100'000'000;
  TwoUsers room(settings);
  // More than the sockets between bob and the server hold, so that the rest waits in the server.
  for (int i = 0; i < 200; ++i) room.alice.send("PM\tbob\t" + std::string(60'000, 'x') + "\talice");
  for (int i = 0; i < kChanges; ++i) {
    room.alice.send(i % 2 == 0 ? "INGAME\talice" : "RETURN\talice");
    ASSERT_TRUE(room.alice.getsList({i % 2 == 0 ? "alice[IG]" : "alice", "bob"}));
  }
  room.alice.send("[AW]\talice");
  ASSERT_TRUE(room.alice.getsList({"alice[AW]", "bob"}));
  const Lines all = room.bob.lines(true);
  EXPECT_EQ(std::count_if(all.begin(), all.end(),
                          [](const std::string& line) { return line.starts_with("PM\t"); }),
            200);
  // One list may have come before the sockets were full.
  EXPECT_LE(std::count(all.begin(), all.end(), "Userscl"), 3);
  EXPECT_EQ(Lines(all.end() - 3, all.end()), (Lines{"Userscl", "Users\talice[AW]", "Users\tbob"}));
}

TEST(Limits, ConnectionsInAll) {
  Settings settings = quickSettings();
  settings.connections = 3;
  TwoUsers room(settings);
  {
    Peer third(room.running.port(), "carol");
    Peer fourth(room.running.port());
    EXPECT_TRUE(fourth.gets("STATUSTEXT\t7895295\t[Server] The server is full. Try again later."));
    EXPECT_TRUE(fourth.isClosed());
  }
  ASSERT_TRUE(room.alice.gets("Announce\t[Server] carol has left Kelvaron"));
  const Peer again(room.running.port(), "dave");
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
  room.alice.send("PM\tbob\tstill here\talice");
  EXPECT_TRUE(room.bob.gets("PM\talice\tstill here"));
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  Peer carol(room.running.port(), "carol");
  EXPECT_TRUE(carol.getsList({"alice", "bob", "carol"}));
  for (const int descriptor : waiting) ::close(descriptor);
}

TEST(Limits, EveryClientOfManyGetsEveryLine) {
  constexpr int kClients = 150;
  TemporaryFolder folder;
  RunningServer running(folder.path());
  std::vector<std::unique_ptr<Peer>> peers;
  peers.reserve(kClients);
  for (int i = 0; i < kClients; ++i) {
    peers.push_back(std::make_unique<Peer>(running.port(), "user" + std::to_string(i)));
  }
  for (const auto& peer : peers) peer->send("Message\tx: \tfrom " + peer->nick());
  for (const auto& reader : peers) {
    std::size_t messages = 0;
    while (messages < peers.size()) {
      const std::string line = reader->next();
      ASSERT_NE(line, "(nothing)");
      if (line.starts_with("Message\t")) ++messages;
    }
  }
}

}  // namespace
}  // namespace kelvaron::server
