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
  EXPECT_EQ(alice.next(), "Userscl");
  EXPECT_EQ(alice.next(), "Users\talice");
  EXPECT_EQ(alice.next(), "MOTD\tBe fair. Have fun.");
  EXPECT_EQ(alice.next(), "Announce\t[Server] alice has entered Kelvaron");
  alice.send("Name\tother\t10.0.0.7");

  Peer bob(running.port(), "bob");
  EXPECT_TRUE(alice.gets("Announce\t[Server] bob has entered Kelvaron"));
  EXPECT_TRUE(alice.getsList({"alice", "bob"}));
  bob.send("Message\tbob: \tgoing");
  bob.socket().close();
  EXPECT_TRUE(alice.gets("Message\tbob: \tgoing"));
  EXPECT_TRUE(alice.gets("Announce\t[Server] bob has left Kelvaron"));
  EXPECT_TRUE(alice.getsList({"alice"}));
}

TEST(Login, AnEmptyMessageOfTheDayIsNotSent) {
  TemporaryFolder folder;
  std::ofstream(folder.path() / "motd") << "\n \n";
  RunningServer running(folder.path());
  Peer alice(running.port(), "alice");
  alice.send("MOTD");
  EXPECT_EQ(alice.lines(), Lines{});
}

TEST(Login, RefusalsAndTheEndOfTheConnection) {
  TemporaryFolder folder;
  const Store store(folder.path());
  store.prepare();
  store.addBans({{BanKind::user, "spammer", "127.0.0.1", "", "alice", "spam"}});
  store.addBans({{BanKind::address, "", "127.0.0.1", "", "alice", "nobody here"}});
  RunningServer running(folder.path());
  const Peer alice(running.port(), "alice\xE9");
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"QZN", "BAD"},
      {"sorrel", "BAD"},
      {"", "BAD"},
      {"a b", "BAD"},
      {"a[b", "BAD"},
      {"a]", "BAD"},
      {"\xA5"
       "bob",
       "BAD"},
      {"a\xA0", "BAD"},
      {"sixteencharacter", "BAD"},
      {"SPAMMER", "banned"},
      {"ALICE\xC9", "DOUBLE"},
      {"a\x01"
       "b",
       "BAD"},
  };
  std::vector<std::unique_ptr<Peer>> peers;
  for (const auto& [nick, answer] : cases) {
    peers.push_back(std::make_unique<Peer>(running.port()));
    peers.back()->sendRaw("Name\t" + nick + "\t10.0.0.7\r\nMOTD\r\nName\tanother\t10.0.0.7\r\n");
  }
  for (std::size_t i = 0; i < cases.size(); ++i) {
    EXPECT_EQ(peers[i]->next(), cases[i].second) << cases[i].first;
    EXPECT_EQ(peers[i]->next(), "(closed)") << cases[i].first;
  }
  const Peer longest(running.port(), "fifteencharacte");
}

TEST(Room, LinesForAll) {
  TwoUsers room;
  const std::string action = "STATUSTEXT\t6336767\t";
  const std::vector<std::pair<std::string, Lines>> cases = {
      {"Message\talice: \thi  there", {"Message\talice: \thi  there"}},
      {"Message\tbob: \tnot me", {"Message\talice: \tnot me"}},
      {"Message\talice: \t", {"Message\talice: \t"}},
      {"Message\talice: ", {}},
      {"ACTION\talice waves", {action + "alice waves"}},
      {"ACTION\tbob is a fool", {action + "alice bob is a fool"}},
      {"ACTION\talicent waves", {action + "alice alicent waves"}},
      {"ACTION\tModerator Privlidges Granted - You are now a moderator.",
       {action + "alice Moderator Privlidges Granted - You are now a moderator."}},
      {"SOUND\tboom box", {"PLAYSOUND\tboom box"}},
      {"SOUND\t..\\x", {}},
      {"SOUND\tC:x", {}},
      {"SOUND\ta/b", {}},
      {"SOUND\tx.wav", {}},
      {"SOUND\t", {}},
      {"SOUND\tx\ny", {"PLAYSOUND\tx y"}},
      {"SOUND\t" + std::string(300, 'x'), {}},
  };
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
  moderator.send("ACTION\tModerator Privlidges Granted - You are now a moderator.");
  EXPECT_EQ(
      moderator.sentTo(room.bob),
      Lines{"STATUSTEXT\t6336767\t* Moderator Privlidges Granted - You are now a moderator."});
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
  room.alice.lines();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(room.bob.lines(true), Lines{}) << "no change, no list";
}

TEST(Text, CodePage1252) {
  EXPECT_EQ(fold("az\xE0\xFE\xF7\xFF\x9A\x9C\x9E\xDF\xD7"),
            "AZ\xC0\xDE\xF7\x9F\x8A\x8C\x8E\xDF\xD7");
  EXPECT_EQ(bareNick(" \xA5"
                     "bob[IG] "),
            "bob");
  EXPECT_EQ(bareNick("[AW]"), "");
  EXPECT_EQ(makeLine({"A", "b\tc\r\n", ""}), "A\tb c  \t\r\n");
}

}  // namespace
}  // namespace kelvaron::server
