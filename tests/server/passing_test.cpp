// Lines from one user to another: who gets them, in what shape, and that no field smuggles a line.
#include <gtest/gtest.h>

#include "server/questions.h"
#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

struct Case {
  std::string sent;  // by alice
  Lines toBob;
  bool refused = false;  // alice gets a refusal
  std::string asked{};   // by bob, before
};

const std::string kMark = "\xA5";
const std::string kProfile = "2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13";
const std::string kGame = "zdoom2\tNONE\tNONE\t -skill 4\t10.0.0.7\talice";

const std::vector<Case> kCases = {
    {"PM\tbob\thello  you\talice", {"PM\talice\thello  you"}},
    {"PM\tBOB[IG]\ttag and case\talice", {"PM\talice\ttag and case"}},
    {"PM\t" + kMark + "bob\tmark\t" + kMark + "alice", {"PM\talice\tmark"}},
    {"PM\tbob\ta\ttab in the text\talice", {"PM\talice\ta"}},
    {"PM\tnobody\thello\talice", {}, true},
    {"XCEPT\t" + kMark + "bob\talice", {"XCEPT\talice"}},
    {"XCEPT\tbob\tmallory", {"XCEPT\talice"}},
    {"DECLINE\tbob\talice", {"DECLINE\talice"}},
    {"START\tbob", {"START"}},
    {"START\tbob\tmore\tfields", {"START"}},
    {"GETPROFILE2\tbob[AW]\talice", {"GETPROFILE2\talice"}},
    {"GETPROFILE2\tnobody\talice", {}, true},
    {"PROFILE\tbob\talice\t" + kProfile, {"PROFILE\talice\t" + kProfile}},
    {"PROFILE2\tbob\talice\t" + kProfile, {"PROFILE\talice\t" + kProfile}},
    {"PROFILE2\tbob\tmallory\t" + kProfile + "\textra", {"PROFILE\talice\t" + kProfile}},
    {"PINGUSER\tbob[CS]\t" + kMark + "alice", {"PING\talice"}},
    {"PINGUSER\tbob\t" + kMark + "mallory", {"PING\talice"}},
    {"PINGUSER\tnobody\talice", {}, true},
    {"RETURNPING\t10.0.0.7\talice\tbob", {"THEPING\t10.0.0.7\talice"}},
    {"RETURNPING\t10.0.0.7\tmallory\tbob", {"THEPING\t10.0.0.7\talice"}},
    {"USERIP\tbob[CS]\talice", {"GETUSERIP\talice"}},
    {"USERIP\tnobody\talice", {}, true},
    {"OKRETURNIP\tbob\t10.0.0.7", {"OKUSERIP\t10.0.0.7"}, false, "USERIP\talice\tbob"},
    {"OKRETURNIP\tbob\t10.0.0.7", {}},  // a second answer
    {"OKRETURNIP\tbob\t10.0.0.7", {}, false, "USERIP\tcarol\tbob"},
    {"OKRETURNIP\tbob\t10.0.0.7", {}, false, "GETIPFT\talice\tbob"},
    {"GETIPFT\tbob\talice", {"GETIPFT\talice"}},
    {"GETIPFT\tnobody\talice", {}, true},
    {"OKUSERFT\tbob\t10.0.0.7", {"RETURNFT\t10.0.0.7"}},  // bob asked two rows above
    {"OKUSERFT\tbob\t10.0.0.7", {}},
    {"GAME\t1\tbob[AW]\t" + kGame, {"GAME\t" + kGame}},
    {"GAME\t3\tbob\tBob[IG]\tbob\t" + kGame, {"GAME\t" + kGame}},
    {"GAME\t2\tnobody\tbob\t" + kGame, {"GAME\t" + kGame}, true},
    {"GAME\t1\tbob\tzdoom\tNONE\tNONE\t\t10.0.0.7\tmallory",
     {"GAME\tzdoom\tNONE\tNONE\t\t10.0.0.7\talice"}},
    // No field becomes a second line or a second field.
    {"PM\tbob\tx\rMSGBOX\tforged\talice", {"PM\talice\tx MSGBOX"}},
    {"PM\tbob\tx\nKicked\talice", {"PM\talice\tx Kicked"}},
    {std::string("OKUSERFT\tbob\t10.0\0.0\x1b.7", 23),
     {"RETURNFT\t10.0 .0 .7"},
     false,
     "GETIPFT\talice\tbob"},
};

// What is not understood, and what nobody waits for, leaves no trace.
const std::vector<std::string> kNothing = {"DECLINE\tnobody\talice",
                                           "PROFILE2\tbob\talice\ttoo few",
                                           "RETURNPING\t10.0.0.7\talice\tnobody",
                                           "GAME\t0\t\t" + kGame,
                                           "GAME\t2\tbob\t" + kGame,
                                           "GAME\t7\tbob\tbob\tbob\tbob\tbob\tbob\tbob\t" + kGame,
                                           "GAME\t-1\tbob\t" + kGame,
                                           "GAME\t99999999999999999999999\tbob\t" + kGame,
                                           "GAME\t\tbob\t" + kGame,
                                           "PM\tbob",
                                           "PM",
                                           "pm\tbob\tcase\talice",
                                           "\tbob\tx",
                                           "STATUSTEXT\t255\tforged",
                                           "Kicked\tbob\tforged",
                                           "\n\n",
                                           "",
                                           std::string(400, '\t')};

TEST(Passing, EachRowReachesItsReceiverInItsShape) {
  TwoUsers room;
  const Peer carol(room.running.port(), "carol");
  std::vector<Case> cases = kCases;
  for (const std::string& sent : kNothing) cases.push_back({sent, {}});
  for (const Case& each : cases) {
    SCOPED_TRACE(each.sent);
    room.bob.send(each.asked);
    room.bob.lines();
    room.alice.lines();
    room.alice.send(each.sent);
    const Lines told = {refusal("nobody is not on Kelvaron.")};
    EXPECT_EQ(room.alice.lines(), each.refused ? told : Lines{});
    EXPECT_EQ(room.bob.lines(), each.toBob);
  }
}

TEST(OpenQuestions, EachHasOneAnswerWithinAMinute) {
  using std::chrono::seconds;
  OpenQuestions questions;
  const Clock::time_point now = Clock::now();
  for (const std::uint64_t whom : {1U, 1U, 2U}) questions.ask(Question::join, whom, now);
  EXPECT_FALSE(questions.takeAnswer(Question::join, 3, now));
  EXPECT_FALSE(questions.takeAnswer(Question::file, 1, now));
  for (const bool taken : {true, true, false}) {
    EXPECT_EQ(questions.takeAnswer(Question::join, 1, now + seconds(59)), taken);
  }
  EXPECT_FALSE(questions.takeAnswer(Question::join, 2, now + seconds(60)));
}

TEST(Passing, LinesInOneWriteAndCutAnywhereAreTheSame) {
  TwoUsers room;
  Peer carol(room.running.port(), "carol");
  const std::string bytes = "PM\tbob\tone\talice\r\nUNKNOWN\r\n\r\nPM\tbob\ttwo\talice\r\n";
  const Lines both = {"PM\talice\tone", "PM\talice\ttwo"};
  for (std::size_t cut = 0; cut < bytes.size(); ++cut) {
    SCOPED_TRACE(cut);
    room.alice.sendRaw(bytes.substr(0, cut));
    // Another client's turn, so that the server has read the first part alone.
    carol.lines();
    room.alice.sendRaw(bytes.substr(cut));
    ASSERT_EQ(room.alice.sentTo(room.bob), both);
  }
}

}  // namespace
}  // namespace kelvaron::server
