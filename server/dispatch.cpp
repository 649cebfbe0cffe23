// The table of keywords.
#include "server/dispatch.h"

#include <algorithm>
#include <array>

#include "server/handlers.h"

namespace kelvaron::server {
namespace {

struct Entry {
  std::string_view keyword;
  std::size_t least_fields;  // the keyword counted in
  void (*handler)(Lobby&, Client&, const Fields&);
  Phase phase = Phase::kMember;  // the one in which the line means something
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
    Entry{"Name", 2, log_in, Phase::kGreeting},
    Entry{"MOTD", 1, message_of_the_day},
    Entry{"ACTION", 2, act},
    Entry{"Message", 3, say},
    Entry{"PM", 3, private_message},
    Entry{"SOUND", 2, play_sound},
    Entry{"[AW]", 1, go_away},
    Entry{"[CS]", 1, start_hosting},
    Entry{"RETURNCS", 1, come_back},
    Entry{"GAME", 9, offer_game},
    Entry{"XCEPT", 3, pass_row<kAccept>},
    Entry{"DECLINE", 3, pass_row<kDecline>},
    Entry{"START", 2, pass_row<kStart>},
    Entry{"INGAME", 1, start_game},
    Entry{"RETURN", 1, end_game},
    Entry{"USERIP", 3, pass_row<kAskJoin>},
    Entry{"OKRETURNIP", 3, pass_row<kJoinAnswer>},
    Entry{"GETPROFILE2", 3, pass_row<kAskProfile>},
    Entry{"PROFILE", 15, pass_row<kProfile>},
    Entry{"PROFILE2", 15, pass_row<kProfile>},
    Entry{"PINGUSER", 3, pass_row<kPing>},
    Entry{"RETURNPING", 4, pass_row<kPingAnswer>},
    Entry{"GETIPFT", 3, pass_row<kAskFile>},
    Entry{"OKUSERFT", 3, pass_row<kFileAnswer>},
    Entry{"RequestOP", 4, request_status},
    Entry{"KICK", 2, kick},
    Entry{"BAN", 2, ban},
    Entry{"GETIP", 2, get_address},
    Entry{"MSG", 2, message_to_all},
    Entry{"THEKICK", 5, kick_with_proof},
    Entry{"IP", 2, tell_address},
    Entry{"IPBAN", 2, tell_banned_address, Phase::kLeaving},
};

}  // namespace

void dispatch(Lobby& lobby, Client& client, std::string_view line) {
  const Fields fields = split(line);
  const auto* entry = std::find_if(kEntries.begin(), kEntries.end(),
                                   [&](const Entry& each) { return each.keyword == fields[0]; });
  if (entry == kEntries.end() || fields.size() < entry->least_fields) return;
  if (client.phase == entry->phase) entry->handler(lobby, client, fields);
}

}  // namespace kelvaron::server
