// The table of keywords.
#include "server/dispatch.h"

#include <algorithm>
#include <array>

#include "server/handlers.h"

namespace kelvaron::server {
namespace {

constexpr std::string_view kLogin = "Name";
constexpr double kTagPrice = 5;
constexpr std::size_t kBytesOfAPrice = 1024;

struct Entry {
  std::string_view keyword;
  std::size_t leastFields;  // the keyword counted in
  void (*handler)(Lobby&, Client&, const Fields&);
  Phase phase = Phase::member;  // the one in which the line means something
  double price = 1;
};

// clang-format off
//                               keyword      target  first  last  sender  asked  plain
constexpr Passing kAccept =     {"XCEPT",          1,     2,    2,      2, false, true};
constexpr Passing kDecline =    {"DECLINE",        1,     2,    2,      2, false, true};
constexpr Passing kStart =      {"START",          1,     1,    0,      0, false};
constexpr Passing kAskProfile = {"GETPROFILE2",    1,     2,    2,      2, true};
constexpr Passing kProfile =    {"PROFILE",        1,     2,   14,      2, false};
constexpr Passing kPing =       {"PING",           1,     2,    2,      2, true};
constexpr Passing kPingAnswer = {"THEPING",        3,     1,    2,      2, false};
constexpr Passing kAskJoin =    {"GETUSERIP",      1,     2,    2,      2, true};
constexpr Passing kJoinAnswer = {"OKUSERIP",       1,     2,    2,      0, false};
constexpr Passing kAskFile =    {"GETIPFT",        1,     2,    2,      2, true};
constexpr Passing kFileAnswer = {"RETURNFT",       1,     2,    2,      0, false};
// clang-format on

constexpr std::array kEntries = {
    Entry{kLogin, 2, logIn, Phase::greeting},
    Entry{"MOTD", 1, messageOfTheDay},
    Entry{"ACTION", 2, act},
    Entry{"Message", 3, say},
    Entry{"PM", 3, privateMessage},
    Entry{"SOUND", 2, playSound},
    Entry{"[AW]", 1, goAway, Phase::member, kTagPrice},
    Entry{"[CS]", 1, startHosting, Phase::member, kTagPrice},
    Entry{"RETURNCS", 1, comeBack, Phase::member, kTagPrice},
    Entry{"GAME", 9, offerGame},
    Entry{"XCEPT", 3, passRow<kAccept>},
    Entry{"DECLINE", 3, passRow<kDecline>},
    Entry{"START", 2, passRow<kStart>},
    Entry{"INGAME", 1, startGame, Phase::member, kTagPrice},
    Entry{"RETURN", 1, endGame, Phase::member, kTagPrice},
    Entry{"USERIP", 3, passRow<kAskJoin>},
    Entry{"OKRETURNIP", 3, passRow<kJoinAnswer>},
    Entry{"GETPROFILE2", 3, passRow<kAskProfile>},
    Entry{"PROFILE", 15, passRow<kProfile>},
    Entry{"PROFILE2", 15, passRow<kProfile>},
    Entry{"PINGUSER", 3, passRow<kPing>},
    Entry{"RETURNPING", 4, passRow<kPingAnswer>},
    Entry{"GETIPFT", 3, passRow<kAskFile>},
    Entry{"OKUSERFT", 3, passRow<kFileAnswer>},
    Entry{"RequestOP", 4, requestStatus},
    Entry{"KICK", 2, kick},
    Entry{"BAN", 2, ban},
    Entry{"GETIP", 2, getAddress},
    Entry{"MSG", 2, messageToAll},
    Entry{"THEKICK", 5, kickWithProof},
    Entry{"IP", 2, tellAddress},
    Entry{"IPBAN", 2, tellBannedAddress, Phase::leaving},
};

const Entry* find(std::string_view keyword) {
  const auto* entry = std::find_if(kEntries.begin(), kEntries.end(),
                                   [&](const Entry& each) { return each.keyword == keyword; });
  return entry == kEntries.end() ? nullptr : entry;
}

std::string_view keywordOf(std::string_view line) { return line.substr(0, line.find('\t')); }

}  // namespace

bool isLogin(std::string_view line) { return keywordOf(line) == kLogin; }

double priceOf(std::string_view line) {
  const Entry* entry = find(keywordOf(line));
  const std::size_t more = line.size() / kBytesOfAPrice;
  return (entry == nullptr ? 1 : entry->price) + static_cast<double>(more);
}

void dispatch(Lobby& lobby, Client& client, std::string_view line) {
  const Fields fields = split(line);
  const Entry* entry = find(fields[0]);
  if (entry == nullptr || fields.size() < entry->leastFields) return;
  if (client.phase == entry->phase) entry->handler(lobby, client, fields);
}

}  // namespace kelvaron::server
