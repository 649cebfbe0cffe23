// Who becomes a moderator, and what moderators and the others can do.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <fstream>
#include <thread>

#include "server/password.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

const std::string kProof = "RequestOP\talice\ta@example.org\tsecret word";
const std::string kRefused = refusal("Refused. Your request was logged.");
const std::string kTooMany = refusal("Too many tries. Wait before you try again.");
const std::string kAliceIsGone = "Announce\t[Server] alice has left Kelvaron";

/// alice can become a moderator, bob and carol can't.
struct ModeratedRoom {
  explicit ModeratedRoom(Changes changes = {}) {
    Store(folder.path()).setModerator({"Alice", "a@example.org", hashPassword("secret word")});
    running = std::make_unique<RunningServer>(folder.path(), changes);
    alice = std::make_unique<Peer>(port(), "alice");
    bob = std::make_unique<Peer>(port(), "bob");
    carol = std::make_unique<Peer>(port(), "carol");
  }
  std::uint16_t port() const { return running->port(); }
  void grant() const { ASSERT_TRUE(alice->gets(kGranted, kProof)); }
  void writeBans(const std::string& text) const { std::ofstream(folder.path() / "bans") << text; }

  TemporaryFolder folder;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<Peer> alice, bob, carol;
};

TEST(Moderation, OnlyTheRightProofGrants) {
  const ModeratedRoom room({{&Settings::proofsPerConnection, 4}});
  for (const char* wrong :
       {"RequestOP\talice\ta@example.org\twrong", "RequestOP\talice\tb@example.org\tsecret word",
        "RequestOP\talice\tsecret word\ta@example.org", "RequestOP\talice\t\t"}) {
    EXPECT_TRUE(room.alice->gets(kRefused, wrong)) << wrong;
  }
  EXPECT_TRUE(room.alice->gets(kTooMany, kProof));
  EXPECT_TRUE(room.bob->gets(kRefused, kProof)) << "the nickname is the connection's";
  room.alice->socket().close();
  ASSERT_TRUE(room.bob->gets(kAliceIsGone));
  Peer again(room.port(), "ALICE");
  EXPECT_TRUE(again.gets(kGranted, kProof));
  EXPECT_TRUE(again.gets(refusal("You are a moderator already."), kProof));
  EXPECT_TRUE(room.bob->getsList({"ALICE", "bob", "carol"})) << "no mark in the list";
}

TEST(Moderation, WrongProofsAreCountedByAddressToo) {
  const ModeratedRoom room({{&Settings::proofsPerAddress, 1}, {&Settings::localTimes, 1}});
  // It counts although its asker doesn't wait for the answer.
  room.bob->send(kProof);
  room.bob->socket().close();
  EXPECT_TRUE(room.running->logs("bob (127.0.0.1): moderator status refused"));
  EXPECT_TRUE(room.alice->gets(kTooMany, kProof));
}

TEST(Moderation, WithoutTheGrant) {
  const ModeratedRoom room;
  for (const char* line : {"KICK\tcarol\tno", "BAN\tcarol\tno", "GETIP\tcarol", "MSG\tto all"}) {
    EXPECT_TRUE(room.bob->gets(refusal("Only moderators can do that."), line)) << line;
  }
  EXPECT_TRUE(room.bob->gets(kRefused, "THEKICK\talice\tcarol\tsecret word\ta@example.org"));
  EXPECT_EQ(room.carol->lines(), Lines{});
  EXPECT_TRUE(room.alice->gets("Kicker", "KICK\tbob\tspam"));
  EXPECT_TRUE(room.alice->gets(kRefused, "THEKICK\talice\tbob[IG]\twrong\ta@example.org"));
  room.alice->send("THEKICK\talice\tbob[IG]\tsecret word\ta@example.org");
  EXPECT_TRUE(room.bob->gets("Kicked\talice\t"));
  EXPECT_TRUE(room.bob->isClosed());
}

TEST(Moderation, Kick) {
  const ModeratedRoom room;
  room.grant();
  EXPECT_TRUE(room.alice->gets(refusal("nobody is not on Kelvaron."), "KICK\tnobody\tx"));
  room.alice->send("KICK\tBOB\tspam and more");
  EXPECT_TRUE(room.bob->gets("Kicked\talice\tspam and more"));
  room.bob->send("Message\tbob: \tstill here");
  EXPECT_TRUE(room.carol->gets("Announce\t[Server] bob was kicked by alice (spam and more)"));
  EXPECT_TRUE(room.carol->getsList({"alice", "carol"}));
  EXPECT_TRUE(room.bob->isClosed());
  EXPECT_EQ(room.carol->lines(true), Lines{}) << "neither the line nor a second farewell";
  const Peer back(room.port(), "bob");
}

TEST(Moderation, ABanIsStoredAndSurvivesARestart) {
  ModeratedRoom room;
  room.grant();
  room.alice->send("BAN\tbob[AW]\tspam");
  EXPECT_TRUE(room.bob->gets("BANIP"));
  EXPECT_EQ(room.bob->next(), "BANUSER\talice\tspam");
  room.bob->sendRaw("IPBAN\t192.168.1.5\r\nIPBAN\t6.6.6.6\r\n");
  EXPECT_TRUE(room.carol->gets("Announce\t[Server] bob was banned by alice (spam)"));
  EXPECT_TRUE(room.bob->isClosed());
  room.carol->send("IPBAN\t1.1.1.1");
  EXPECT_EQ(Peer::loginAnswer(room.port(), "Bob"), "banned");
  room.running.reset();
  room.running = std::make_unique<RunningServer>(room.folder.path());
  EXPECT_EQ(Peer::loginAnswer(room.port(), "Bob"), "banned");
  const Ban expected = {BanKind::user, "bob", "127.0.0.1", "192.168.1.5", "alice", "spam"};
  EXPECT_EQ(Store(room.folder.path()).bans(), std::vector<Ban>{expected});
}

TEST(Moderation, ABanThatCannotBeStoredHoldsAndIsTold) {
  const ModeratedRoom room;
  room.grant();
  room.writeBans("nonsense\n");
  EXPECT_TRUE(room.alice->gets(
      refusal("The ban of bob holds, but could not be stored. That will be tried again."),
      "BAN\tbob\tspam"));
  EXPECT_EQ(Peer::loginAnswer(room.port(), "bob"), "banned");
  // The next ban brings both to the file that can be written again.
  room.writeBans("# empty\n");
  room.alice->send("BAN\tcarol\ttoo");
  ASSERT_TRUE(room.running->logs("the bans are stored now"));
  std::string stored;
  for (const Ban& each : Store(room.folder.path()).bans()) stored += each.nick + " ";
  EXPECT_EQ(stored, "bob carol ");
}

TEST(Moderation, AModeratorsNicknameNeedsItsProof) {
  ModeratedRoom room({{&Settings::moderatorProofMs, 1000}});
  EXPECT_TRUE(room.carol->gets(kAliceIsGone));
  Peer again(room.port());
  again.send("Name\talice\t127.0.0.1");
  EXPECT_TRUE(again.gets(
      refusal("This nickname is a moderator's. Request the operator status within 1 seconds, or "
              "you will be disconnected.")));
  EXPECT_EQ(again.next(), welcome("alice")) << "what follows hasn't the colour of the refusal";
  EXPECT_TRUE(room.carol->gets(kAliceIsGone));
  EXPECT_TRUE(again.gets(refusal("The password for this nickname did not come in time.")));
  EXPECT_TRUE(again.isClosed());
  for (const auto& [proof, proven] : std::vector<std::pair<std::string, std::string>>{
           {kProof, kGranted},
           {"THEKICK\talice\tbob\tsecret word\ta@example.org",
            "Announce\t[Server] bob was kicked by alice"}}) {
    Peer alice(room.port(), "alice");
    ASSERT_TRUE(alice.gets(proven, proof));
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    EXPECT_EQ(alice.lines(), Lines{}) << "a moderator stays";
    alice.socket().close();
    ASSERT_TRUE(room.carol->gets(kAliceIsGone));
  }
}

TEST(Moderation, ReloadTakesABanAwayAndKeepsItWhenTheFileIsBroken) {
  const ModeratedRoom room;
  const std::string read = "the files of the folder are read anew";
  for (const auto& [bans, logged, answer] :
       std::vector<std::array<std::string, 3>>{{"nick\tdave\t\t\tby hand\tspam\n", read, "banned"},
                                               {"nick\tdave\n", "not read anew", "banned"},
                                               {"# none\n", read, "Userscl"}}) {
    room.writeBans(bans);
    room.running->runOnLoop([](Server& server) { server.reload(); });
    EXPECT_TRUE(room.running->logs(logged));
    EXPECT_EQ(Peer::loginAnswer(room.port(), "Dave"), answer) << bans;
  }
}

TEST(Moderation, WhatTheGrantGives) {
  const ModeratedRoom room;
  room.grant();
  const std::string mark = "\xA5";
  room.alice->send("XCEPT\tbob\t" + mark + "alice");
  EXPECT_TRUE(room.bob->gets("XCEPT\talice")) << "a guest is found under the name in the list";
  room.alice->send("PM\tbob\thello\t" + mark + "alice");
  EXPECT_TRUE(room.bob->gets("PM\t" + mark + "alice\thello"));

  room.alice->send("GETIP\tbob[IG]");
  EXPECT_TRUE(room.bob->gets("getip"));
  room.bob->send("IP\t192.168.1.5");
  room.bob->send("IP\tnot asked");
  const std::string answer = "STATUSTEXT\t16767120\t[Server] ";
  EXPECT_TRUE(
      room.alice->gets(answer + "bob tells the address 192.168.1.5; the server sees 127.0.0.1"));
  EXPECT_TRUE(room.alice->gets(answer + "carol tells no address; the server sees 127.0.0.1",
                               "GETIP\tcarol"));

  room.alice->send("MSG\tto all");
  const Lines expected = {"STATUSTEXT\t8454143\t[Server] Message from alice: to all"};
  EXPECT_EQ(room.alice->lines(), expected);
  EXPECT_EQ(room.bob->lines(), expected);
}

}  // namespace
}  // namespace kelvaron::server
