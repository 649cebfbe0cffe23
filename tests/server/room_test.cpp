// Coming in, being refused, talking to all, tags, and what stays as it is for bad input.
#include <gtest/gtest.h>

#include <fstream>

#include "server/line.h"
#include "server/text.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

TEST(Login, TheListComesAtOnceAndTheMessageOfTheDayOnRequest) {
  TemporaryFolder folder;
  std::ofstream(folder.path() / "motd") << "Be fair.\r\n\nHave\tfun.\n";
  RunningServer running(folder.path());
  Peer alice(running.port());
  alice.sendRaw("MOTD\r\nMessage\tx: \ttoo early\r\nName\talice\t10.0.0.7\r\nMOTD\r\n");
  for (const std::string& line :
       Lines{"Userscl", "Users\talice", welcome("alice"), "MOTD\tBe fair.\nHave fun.",
             "Announce\t[Server] alice has entered Kelvaron"}) {
    EXPECT_EQ(alice.next(), line);
  }
  alice.send("Name\tother\t10.0.0.7");

  Peer bob(running.port());
  bob.send("Name\tbob");  // and no address
  EXPECT_TRUE(alice.gets("Announce\t[Server] bob has entered Kelvaron"));
  EXPECT_TRUE(alice.getsList({"alice", "bob"}));
  bob.send("Message\tbob: \tgoing");
  bob.socket().close();
  EXPECT_TRUE(alice.gets("Message\tbob: \tgoing"));
  EXPECT_TRUE(alice.gets("Announce\t[Server] bob has left Kelvaron"));
  EXPECT_TRUE(alice.getsList({"alice"}));
  std::ofstream(folder.path() / "motd") << "\n \n";
  running.runOnLoop([](Server& server) { server.reload(); });
  EXPECT_TRUE(running.logs("read anew"));
  Peer carol(running.port(), "carol");
  carol.send("MOTD");
  EXPECT_EQ(carol.lines(), Lines{}) << "an empty one is not sent";
}

TEST(Login, RefusalsAndTheEndOfTheConnection) {
  TemporaryFolder folder;
  Store(folder.path())
      .addBans({{BanKind::user, "spammer", "127.0.0.1", "", "alice", "spam"},
                {BanKind::address, "", "127.0.0.1", "", "alice", "nobody here"}});
  RunningServer running(folder.path());
  const Peer alice(running.port(), "alice\xE9");
  std::vector<std::pair<std::string, std::string>> cases = {{"SPAMMER", "banned"},
                                                            {"ALICE\xC9", "DOUBLE"}};
  // Marks at its ends make no other nickname.
  for (const char* like :
       {"alice\xE9.", "alice\xE9:", "\267Alice\351", "alice\xE9\x95", "_alice\xE9_"}) {
    cases.emplace_back(like, "DOUBLE");
  }
  for (const char* bad : {"QZN", "sorrel", "", "a b", "a[b", "a]", "\xA5you", "a\xA0",
                          "sixteencharacter", "a\x01z", "nONE", "None.", "Server:"}) {
    cases.emplace_back(bad, "BAD");
  }
  std::vector<std::unique_ptr<Peer>> peers;
  for (const auto& [nick, answer] : cases) {
    peers.push_back(std::make_unique<Peer>(running.port()));
    peers.back()->sendRaw("Name\t" + nick + "\t10.0.0.7\r\nMOTD\r\nName\tanother\t10.0.0.7\r\n");
  }
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(peers[i]->next(), cases[i].second) << cases[i].first;
    EXPECT_EQ(peers[i]->next(), "(closed)") << cases[i].first;
  }
  for (const char* good : {"fifteencharacte", "alice\3511", "a.lice\xE9", "...", "..", "none1"}) {
    const Peer peer(running.port(), good);
  }
}

TEST(Room, LinesForAll) {
  TwoUsers room;
  const std::string action = "STATUSTEXT\t6336767\t";
  std::vector<std::pair<std::string, Lines>> cases = {
      {"Message\talice: \thi  there", {"Message\talice: \thi  there"}},
      {"Message\tbob: \tnot me", {"Message\talice: \tnot me"}},
      {"Message\talice: \t", {"Message\talice: \t"}},
      {"Message\talice: ", {}},
      {"ACTION\talice waves", {action + "alice waves"}},
      {"ACTION\tbob is a fool", {action + "alice bob is a fool"}},
      {"ACTION\talicent waves", {action + "alice alicent waves"}},
      {"SOUND\tboom box", {"PLAYSOUND\tboom box"}},
      {"SOUND\tx\ny", {"PLAYSOUND\tx y"}},
      {"SOUND\t" + std::string(64, 'x'), {"PLAYSOUND\t" + std::string(64, 'x')}},
  };
  for (const std::string& bad : Lines{"..\\x", "C:x", "a/b", "x.wav", "", std::string(65, 'x')}) {
    cases.emplace_back("SOUND\t" + bad, Lines{});
  }
  for (const auto& [sent, expected] : cases) {
    SCOPED_TRACE(sent);
    room.alice.send(sent);
    EXPECT_EQ(room.alice.lines(), expected);
    EXPECT_EQ(room.bob.lines(), expected);
  }
}

TEST(Room, NobodyNamedLikeTheGrantCanGrant) {
  TwoUsers room;
  Peer moderator(room.running.port(), "Moderator");
  const std::string grant = "Moderator Privlidges Granted - You are now a moderator.";
  moderator.send("ACTION\t" + grant);
  EXPECT_EQ(moderator.sentTo(room.bob), Lines{"STATUSTEXT\t6336767\t* " + grant});
}

TEST(Room, OneTagAtATimeAndEachComesBack) {
  TwoUsers room;
  const std::vector<std::pair<std::string, std::string>> steps = {
      {"[AW]\talice", "alice[AW]"},   {"[CS]\talice", "alice[CS]"},
      {"INGAME\talice", "alice[IG]"}, {"RETURN\talice", "alice[CS]"},
      {"RETURNCS\talice", "alice"},   {"[AW]\tbob", "alice[AW]"},
      {"INGAME\talice", "alice[IG]"}, {"RETURNCS\talice", "alice[IG]"},
      {"RETURN\t", "alice"},
  };
  for (const auto& [sent, entry] : steps) {
    SCOPED_TRACE(sent);
    room.alice.send(sent);
    EXPECT_TRUE(room.bob.getsList({entry, "bob"}));
  }
  room.bob.lines(true);
  room.alice.send("RETURN\talice");
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(room.bob.lines(true), Lines{}) << "no change, no list";
}

TEST(Text, CodePage1252) {
  EXPECT_EQ(fold("az\xE0\xFE\xF7\xFF\x9A\x9C\x9E\xDF\xD7"),
            "AZ\xC0\xDE\xF7\x9F\x8A\x8C\x8E\xDF\xD7");
  EXPECT_EQ(bareNick(" \xA5you[IG] "), "you");
  EXPECT_EQ(bareNick("[AW]"), "");
  EXPECT_EQ(makeLine({"A", "b\tc\r\n", ""}), "A\tb c  \t\r\n");
}

}  // namespace
}  // namespace kelvaron::server
