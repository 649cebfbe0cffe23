// Lines from one user to another: who gets them, in what shape, and that no field smuggles a line.
#include <gtest/gtest.h>

#include "tests/server/peer.h"

namespace kelvaron::server {
namespace {

struct Case {
  std::string sent;  // by alice
  Lines toBob;
  bool refused;  // alice gets a refusal
};

const std::string kProfile = "2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13";
const std::string kGame = "zdoom2\tNONE\tNONE\t -skill 4\t10.0.0.7\talice";

const std::vector<Case> kCases = {
    {"PM\tbob\thello  you\talice", {"PM\talice\thello  you"}, false},
    {"PM\tBOB[IG]\ttag and case\talice", {"PM\talice\ttag and case"}, false},
    {"PM\t\xA5"
     "bob\tmark\t\xA5"
     "alice",
     {"PM\talice\tmark"},
     false},
    {"PM\tbob\ta\ttab in the text\talice", {"PM\talice\ta"}, false},
    {"PM\tnobody\thello\talice", {}, true},
    {"XCEPT\t\xA5"
     "bob\talice",
     {"XCEPT\talice"},
     false},
    {"XCEPT\tbob\tmallory", {"XCEPT\talice"}, false},
    {"DECLINE\tbob\talice", {"DECLINE\talice"}, false},
    {"DECLINE\tnobody\talice", {}, false},
    {"START\tbob", {"START"}, false},
    {"START\tbob\tmore\tfields", {"START"}, false},
    {"GETPROFILE2\tbob[AW]\talice", {"GETPROFILE2\talice"}, false},
    {"GETPROFILE2\tnobody\talice", {}, true},
    {"PROFILE\tbob\talice\t" + kProfile, {"PROFILE\talice\t" + kProfile}, false},
    {"PROFILE2\tbob\talice\t" + kProfile, {"PROFILE\talice\t" + kProfile}, false},
    {"PROFILE2\tbob\tmallory\t" + kProfile + "\textra", {"PROFILE\talice\t" + kProfile}, false},
    {"PROFILE2\tbob\talice\ttoo few", {}, false},
    {"PINGUSER\tbob[CS]\t\xA5"
     "alice",
     {"PING\talice"},
     false},
    {"PINGUSER\tbob\t\xA5"
     "mallory",
     {"PING\talice"},
     false},
    {"PINGUSER\tnobody\talice", {}, true},
    {"RETURNPING\t10.0.0.7\talice\tbob", {"THEPING\t10.0.0.7\talice"}, false},
    {"RETURNPING\t10.0.0.7\tmallory\tbob", {"THEPING\t10.0.0.7\talice"}, false},
    {"RETURNPING\t10.0.0.7\talice\tnobody", {}, false},
    {"USERIP\tbob[CS]\talice", {"GETUSERIP\talice"}, false},
    {"USERIP\tnobody\talice", {}, true},
    {"OKRETURNIP\tbob\t10.0.0.7", {"OKUSERIP\t10.0.0.7"}, false},
    {"GETIPFT\tbob\talice", {"GETIPFT\talice"}, false},
    {"GETIPFT\tnobody\talice", {}, true},
    {"OKUSERFT\tbob\t10.0.0.7", {"RETURNFT\t10.0.0.7"}, false},
    {"GAME\t1\tbob[AW]\t" + kGame, {"GAME\t" + kGame}, false},
    {"GAME\t3\tbob\tBob[IG]\tbob\t" + kGame, {"GAME\t" + kGame}, false},
    {"GAME\t2\tnobody\tbob\t" + kGame, {"GAME\t" + kGame}, true},
    {"GAME\t1\tbob\tzdoom\tNONE\tNONE\t\t10.0.0.7\tmallory",
     {"GAME\tzdoom\tNONE\tNONE\t\t10.0.0.7\talice"},
     false},
    {"GAME\t0\t\t" + kGame, {}, false},
    {"GAME\t2\tbob\t" + kGame, {}, false},
    {"GAME\t7\tbob\tbob\tbob\tbob\tbob\tbob\tbob\t" + kGame, {}, false},
    {"GAME\t-1\tbob\t" + kGame, {}, false},
    {"GAME\t99999999999999999999999\tbob\t" + kGame, {}, false},
    {"GAME\t\tbob\t" + kGame, {}, false},
    // No field becomes a second line or a second field.
    {"PM\tbob\tx\rMSGBOX\tforged\talice", {"PM\talice\tx MSGBOX"}, false},
    {"PM\tbob\tx\nKicked\talice", {"PM\talice\tx Kicked"}, false},
    {std::string("OKUSERFT\tbob\t10.0\0.0\x1b.7", 23), {"RETURNFT\t10.0 .0 .7"}, false},
    // What is not understood leaves no trace.
    {"PM\tbob", {}, false},
    {"PM", {}, false},
    {"pm\tbob\tcase\talice", {}, false},
    {"\tbob\tx", {}, false},
    {"STATUSTEXT\t255\tforged", {}, false},
    {"Kicked\tbob\tforged", {}, false},
    {"\n\n", {}, false},
    {"", {}, false},
    {std::string(400, '\t'), {}, false},
};

TEST(Passing, EachRowReachesItsReceiverInItsShape) {
  TwoUsers room;
  for (const Case& each : kCases) {
    SCOPED_TRACE(each.sent);
    room.alice.send(each.sent);
    const Lines answers = room.alice.lines();
    EXPECT_EQ(room.bob.lines(), each.toBob);
    EXPECT_EQ(answers.size(), each.refused ? 1U : 0U);
    if (each.refused && !answers.empty()) {
      EXPECT_EQ(answers[0], "STATUSTEXT\t7895295\t[Server] nobody is not on Kelvaron.");
    }
  }
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
