// The table of keywords.
#include "server/dispatch.h"

#include <algorithm>
#include <array>

#include "server/handlers.h"

namespace kelvaron::server {
namespace {

struct Entry {
  std::string_view keyword;
  std::size_t leastFields;  // the keyword counted in
  void (*handler)(Lobby&, Client&, const Fields&);
  Phase phase = Phase::member;  // the one in which the line means something
};

// clang-format off
//                               keyword      target  first  last  sender  asked
constexpr Passing kAccept =     {"XCEPT",          1,     2,    2,      2, false};
constexpr Passing kDecline =    {"DECLINE",        1,     2,    2,      2, false};
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
    Entry{"Name", 2, logIn, Phase::greeting},
    Entry{"MOTD", 1, messageOfTheDay},
    Entry{"ACTION", 2, act},
    Entry{"Message", 3, say},
    Entry{"PM", 3, privateMessage},
    Entry{"SOUND", 2, playSound},
    Entry{"[AW]", 1, goAway},
    Entry{"[CS]", 1, startHosting},
    Entry{"RETURNCS", 1, comeBack},
    Entry{"GAME", 9, offerGame},
    Entry{"XCEPT", 3, passRow<kAccept>},
    Entry{"DECLINE", 3, passRow<kDecline>},
    Entry{"START", 2, passRow<kStart>},
    Entry{"INGAME", 1, startGame},
    Entry{"RETURN", 1, endGame},
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

}  // namespace

void dispatch(Lobby& lobby, Client& client, std::string_view line) {
  const Fields fields = split(line);
  const auto* entry = std::find_if(kEntries.begin(), kEntries.end(),
                                   [&](const Entry& each) { return each.keyword == fields[0]; });
  if (entry == kEntries.end() || fields.size() < entry->leastFields) return;
  if (client.phase == entry->phase) entry->handler(lobby, client, fields);
}

}  // namespace kelvaron::server
