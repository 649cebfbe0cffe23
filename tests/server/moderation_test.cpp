// Who becomes a moderator, and what moderators and the others can do.
#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "server/password.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

const std::string kGrant =
    "STATUSTEXT\t8454016\tModerator Privlidges Granted - You are now a moderator.";
const std::string kRefusal = "STATUSTEXT\t7895295\t[Server] ";
const std::string kProof = "RequestOP\talice\ta@example.org\tsecret word";

/// alice can become a moderator, bob and carol can't.
struct ModeratedRoom {
  explicit ModeratedRoom(const Settings& settings = quickSettings()) {
    const Store store(folder.path());
    store.prepare();
    store.setModerator({"Alice", "a@example.org", hashPassword("secret word")});
    start(settings);
  }
  void start(const Settings& settings) {
    running = std::make_unique<RunningServer>(folder.path(), settings);
    alice = std::make_unique<Peer>(running->port(), "alice");
    bob = std::make_unique<Peer>(running->port(), "bob");
    carol = std::make_unique<Peer>(running->port(), "carol");
  }
  void grant() const {
    alice->send(kProof);
    ASSERT_TRUE(alice->gets(kGrant));
  }

  TemporaryFolder folder;
  std::unique_ptr<RunningServer> running;
  std::unique_ptr<Peer> alice, bob, carol;
};

TEST(Moderation, OnlyTheRightProofGrants) {
  Settings settings = quickSettings();
  settings.proofsPerConnection = 4;
  const ModeratedRoom room(settings);
  const std::string refused = kRefusal + "Refused. Your request was logged.";
  for (const char* wrong :
       {"RequestOP\talice\ta@example.org\twrong", "RequestOP\talice\tb@example.org\tsecret word",
        "RequestOP\talice\tsecret word\ta@example.org", "RequestOP\talice\t\t"}) {
    room.alice->send(wrong);
    EXPECT_TRUE(room.alice->gets(refused)) << wrong;
  }
  room.alice->send(kProof);
  EXPECT_TRUE(room.alice->gets(kRefusal + "Too many tries. Wait before you try again."));

  room.bob->send(kProof);
  EXPECT_TRUE(room.bob->gets(refused)) << "the nickname is the connection's, not the line's";
  room.alice->socket().close();
  ASSERT_TRUE(room.bob->gets("Announce\t[Server] alice has left Kelvaron"));
  Peer again(room.running->port(), "ALICE");
  again.send(kProof);
  EXPECT_TRUE(again.gets(kGrant));
  again.send(kProof);
  EXPECT_TRUE(again.gets(kRefusal + "You are a moderator already."));
  EXPECT_TRUE(room.bob->getsList({"ALICE", "bob", "carol"})) << "no mark in the list";
}

TEST(Moderation, WrongProofsAreCountedByAddressToo) {
  Settings settings = quickSettings();
  settings.proofsPerAddress = 1;
  settings.localTimes = 1;
  const ModeratedRoom room(settings);
  // It counts although its asker doesn't wait for the answer.
  room.bob->send(kProof);
  room.bob->socket().close();
  EXPECT_TRUE(room.running->logs("bob (127.0.0.1): moderator status refused"));
  room.alice->send(kProof);
  EXPECT_TRUE(room.alice->gets(kRefusal + "Too many tries. Wait before you try again."));
}

TEST(Moderation, TheOthersAreRefused) {
  const ModeratedRoom room;
  for (const char* line : {"KICK\tcarol\tno", "BAN\tcarol\tno", "GETIP\tcarol", "MSG\tto all"}) {
    room.bob->send(line);
    EXPECT_TRUE(room.bob->gets(kRefusal + "Only moderators can do that.")) << line;
  }
  room.bob->send("THEKICK\talice\tcarol\tsecret word\ta@example.org");
  EXPECT_TRUE(room.bob->gets(kRefusal + "Refused. Your request was logged."));
  EXPECT_EQ(room.carol->lines(), Lines{});
}

TEST(Moderation, AModeratorWithoutTheGrantKicksWithProof) {
  const ModeratedRoom room;
  room.alice->send("KICK\tbob\tspam");
  EXPECT_TRUE(room.alice->gets("Kicker"));
  room.alice->send("THEKICK\talice\tbob[IG]\twrong\ta@example.org");
  EXPECT_TRUE(room.alice->gets(kRefusal + "Refused. Your request was logged."));
  room.alice->send("THEKICK\talice\tbob[IG]\tsecret word\ta@example.org");
  EXPECT_TRUE(room.bob->gets("Kicked\talice\t"));
  EXPECT_TRUE(room.bob->isClosed());
}

TEST(Moderation, Kick) {
  const ModeratedRoom room;
  room.grant();
  room.alice->send("KICK\tnobody\tx");
  EXPECT_TRUE(room.alice->gets(kRefusal + "nobody is not on Kelvaron."));
  room.alice->send("KICK\tBOB\tspam and more");
  EXPECT_TRUE(room.bob->gets("Kicked\talice\tspam and more"));
  room.bob->send("Message\tbob: \tstill here");
  EXPECT_TRUE(room.carol->gets("Announce\t[Server] bob was kicked by alice (spam and more)"));
  EXPECT_TRUE(room.carol->getsList({"alice", "carol"}));
  EXPECT_TRUE(room.bob->isClosed());
  EXPECT_EQ(room.carol->lines(true), Lines{}) << "neither the line nor a second farewell";
  const Peer back(room.running->port(), "bob");
}

TEST(Moderation, ABanIsStoredAndSurvivesARestart) {
  ModeratedRoom room;
  room.grant();
  room.alice->send("BAN\tbob[AW]\tspam");
  EXPECT_TRUE(room.bob->gets("BANIP"));
  EXPECT_EQ(room.bob->next(), "BANUSER\talice\tspam");
  room.bob->send("IPBAN\t192.168.1.5");
  EXPECT_TRUE(room.carol->gets("Announce\t[Server] bob was banned by alice (spam)"));
  EXPECT_TRUE(room.bob->isClosed());
  room.carol->send("IPBAN\t1.1.1.1");
  for (const char* start : {"first", "second"}) {
    SCOPED_TRACE(start);
    Peer back(room.running->port());
    back.send("Name\tBob\t10.0.0.7");
    EXPECT_EQ(back.next(), "banned");
    room.running.reset();
    room.running = std::make_unique<RunningServer>(room.folder.path());
  }
  const Ban expected = {BanKind::user, "bob", "127.0.0.1", "192.168.1.5", "alice", "spam"};
  EXPECT_EQ(Store(room.folder.path()).bans(), std::vector<Ban>{expected});
}

TEST(Moderation, ABanThatCannotBeStoredHoldsAndIsTold) {
  const ModeratedRoom room;
  room.grant();
  std::ofstream(room.folder.path() / "bans") << "nonsense\n";
  room.alice->send("BAN\tbob\tspam");
  EXPECT_TRUE(room.alice->gets(
      kRefusal + "The ban of bob holds, but could not be stored. That will be tried again."));
  Peer back(room.running->port());
  back.send("Name\tbob\t10.0.0.7");
  EXPECT_EQ(back.next(), "banned");
  // The next ban brings both to the file that can be written again.
  std::ofstream(room.folder.path() / "bans") << "# empty\n";
  room.alice->send("BAN\tcarol\ttoo");
  ASSERT_TRUE(room.running->logs("the bans are stored now"));
  const std::vector<Ban> stored = Store(room.folder.path()).bans();
  ASSERT_EQ(stored.size(), 2U);
  EXPECT_EQ(stored[0].nick + stored[1].nick, "bobcarol");
}

TEST(Moderation, AModeratorsNicknameNeedsItsProof) {
  Settings settings = quickSettings();
  settings.moderatorProofMs = 1000;
  ModeratedRoom room(settings);
  const std::string told = kRefusal +
                           "This nickname is a moderator's. Request the operator status within 1 "
                           "seconds, or you will be disconnected.";
  EXPECT_TRUE(room.alice->gets(told));
  EXPECT_TRUE(room.carol->gets("Announce\t[Server] alice has left Kelvaron"));
  EXPECT_TRUE(room.alice->gets(kRefusal + "The password for this nickname did not come in time."));
  EXPECT_TRUE(room.alice->isClosed());
  room.alice = std::make_unique<Peer>(room.running->port(), "alice");
  room.grant();
  std::this_thread::sleep_for(std::chrono::milliseconds(settings.moderatorProofMs + 200));
  EXPECT_EQ(room.alice->lines(), Lines{}) << "a moderator stays";
}

TEST(Moderation, AGuestIsFoundUnderTheNameInTheListAlsoAsAModerator) {
  const ModeratedRoom room;
  room.grant();
  room.alice->send(
      "XCEPT\tbob\t\xA5"
      "alice");
  EXPECT_TRUE(room.bob->gets("XCEPT\talice"));
  room.alice->send(
      "PM\tbob\thello\t\xA5"
      "alice");
  EXPECT_TRUE(
      room.bob->gets("PM\t\xA5"
                     "alice\thello"));
}

TEST(Moderation, ReloadTakesABanAwayAndKeepsItWhenTheFileIsBroken) {
  const ModeratedRoom room;
  const auto loginOf = [&](const std::string& nick) {
    Peer peer(room.running->port());
    peer.send("Name\t" + nick + "\t10.0.0.7");
    return peer.next();
  };
  const auto reloadWith = [&](const std::string& bans) {
    std::ofstream(room.folder.path() / "bans") << bans;
    room.running->runOnLoop([](Server& server) { server.reload(); });
    EXPECT_TRUE(room.running->logs("read anew"));
  };
  reloadWith("nick\tdave\t\t\tby hand\tspam\n");
  EXPECT_EQ(loginOf("Dave"), "banned");
  reloadWith("nick\tdave\n");
  EXPECT_EQ(loginOf("dave"), "banned");
  reloadWith("# none\n");
  EXPECT_EQ(loginOf("dave"), "Userscl");
}

TEST(Moderation, AddressOfAUser) {
  const ModeratedRoom room;
  room.grant();
  room.alice->send("GETIP\tbob[IG]");
  EXPECT_TRUE(room.bob->gets("getip"));
  room.bob->send("IP\t192.168.1.5");
  room.bob->send("IP\tnot asked");
  const std::string answer = "STATUSTEXT\t16767120\t[Server] ";
  EXPECT_TRUE(
      room.alice->gets(answer + "bob tells the address 192.168.1.5; the server sees 127.0.0.1"));
  room.alice->send("GETIP\tcarol");
  EXPECT_TRUE(room.alice->gets(answer + "carol tells no address; the server sees 127.0.0.1"));
}

TEST(Moderation, MessageToAll) {
  const ModeratedRoom room;
  room.grant();
  room.alice->send("MSG\tModerator Privlidges Granted - You are now a moderator.");
  const Lines expected = {
      "STATUSTEXT\t8454143\t[Server] Message from alice: Moderator Privlidges Granted - You are "
      "now a "
      "moderator."};
  EXPECT_EQ(room.alice->lines(), expected);
  EXPECT_EQ(room.bob->lines(), expected);
}

}  // namespace
}  // namespace kelvaron::server
