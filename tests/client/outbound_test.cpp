#include "session/outbound.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kelvaron::testing {
namespace {

// Every line that the client writes, against what the server reads. "|" stands for TAB.
TEST(Outbound, FieldOrders) {
  const std::vector<std::string> six = {"a", "b[AW]", "c", "d", "e", "f"};
  const outbound::ProfileTexts texts = {"Fi", "La", "20", "m",        "123",       "e@x",
                                        "Ci", "St", "Co", "http://h", "no comment"};
  const std::vector<std::pair<std::string, std::string>> cases = {
      {outbound::name("bob", "10.0.0.1"), "Name|bob|10.0.0.1"},
      {outbound::motd(), "MOTD"},
      {outbound::action("bob waves"), "ACTION|bob waves"},
      {outbound::message("bob", "hi"), "Message|bob: |hi"},
      {outbound::privateMessage("al[AW]", "hi", "bob"), "PM|al[AW]|hi|bob"},
      {outbound::sound("boom"), "SOUND|boom"},
      {outbound::away("bob"), "[AW]|bob"},
      {outbound::hostingCs("bob"), "[CS]|bob"},
      {outbound::returnCs("bob"), "RETURNCS|bob"},
      {outbound::game({{}, "zdoom", "NONE", "NONE", "", "10.0.0.1", "bob"}),
       "GAME|0||zdoom|NONE|NONE||10.0.0.1|bob"},
      {outbound::game({six, "gldoom5", "x.wad", "NONE", " -skill 4", "10.0.0.1", "\245bob"}),
       "GAME|6|a|b[AW]|c|d|e|f|gldoom5|x.wad|NONE| -skill 4|10.0.0.1|\245bob"},
      {outbound::accept("host", "bob"), "XCEPT|host|bob"},
      {outbound::decline("host", "bob"), "DECLINE|host|bob"},
      {outbound::start("al"), "START|al"},
      {outbound::inGame("bob"), "INGAME|bob"},
      {outbound::returnFromGame("bob"), "RETURN|bob"},
      {outbound::userIp("al[CS]", "bob"), "USERIP|al[CS]|bob"},
      {outbound::okReturnIp("al", "10.0.0.1"), "OKRETURNIP|al|10.0.0.1"},
      {outbound::getProfile2("al", "bob"), "GETPROFILE2|al|bob"},
      {outbound::profile("al", "bob", "BETA", texts),
       "PROFILE|al|bob|BETA|Fi|La|20|m|123|e@x|Ci|St|Co|http://h|no comment"},
      {outbound::profile2("al", "bob", "BETA", texts),
       "PROFILE2|al|bob|BETA|Fi|La|20|m|123|e@x|Ci|St|Co|http://h|no comment"},
      {outbound::pingUser("al", "bob"), "PINGUSER|al|bob"},
      {outbound::returnPing("10.0.0.1", "bob", "al"), "RETURNPING|10.0.0.1|bob|al"},
      {outbound::getIpForFile("al", "bob"), "GETIPFT|al|bob"},
      {outbound::okUserForFile("al", "10.0.0.1"), "OKUSERFT|al|10.0.0.1"},
      {outbound::requestOp("bob", "e@x", "secret"), "RequestOP|bob|e@x|secret"},
      {outbound::kick("al", ""), "KICK|al|"},
      {outbound::ban("al", "spam"), "BAN|al|spam"},
      {outbound::getIp("al"), "GETIP|al"},
      {outbound::serverMessage("hear ye"), "MSG|hear ye"},
      {outbound::theKick("bob", "al", "secret", "e@x"), "THEKICK|bob|al|secret|e@x"},
      {outbound::ip("10.0.0.1"), "IP|10.0.0.1"},
      {outbound::ipBan("10.0.0.1"), "IPBAN|10.0.0.1"},
      // A TAB that somebody typed begins a new field; a line end never begins a new line.
      {outbound::message("bob", "a\tb"), "Message|bob: |a|b"},
      {outbound::returnPing("10.0.0.1", "bob", "al\r\nKICK\tbob\n"),
       "RETURNPING|10.0.0.1|bob|al  KICK|bob "}};
  for (auto [line, expected] : cases) {
    std::ranges::replace(expected, '|', '\t');
    EXPECT_EQ(line, expected + "\r\n");
  }
}

}  // namespace
}  // namespace kelvaron::testing
