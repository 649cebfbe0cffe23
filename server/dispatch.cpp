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

struct Keyword {
  std::string_view keyword;
  std::size_t leastFields = 1;  // the keyword counted in
  void (*handler)(Lobby&, Client&, const Fields&);
  Phase phase = Phase::member;  // the one in which the line means something
  double price = 1;
};

constexpr Passing kAccept = {.keyword = "XCEPT", .first = 2, .last = 2, .sender = 2, .plain = true};
constexpr Passing kDecline = {
    .keyword = "DECLINE", .first = 2, .last = 2, .sender = 2, .plain = true};
constexpr Passing kStart = {.keyword = "START"};
constexpr Passing kAskProfile = {
    .keyword = "GETPROFILE2", .first = 2, .last = 2, .sender = 2, .asked = true};
constexpr Passing kProfile = {.keyword = "PROFILE", .first = 2, .last = 14, .sender = 2};
constexpr Passing kPing = {.keyword = "PING", .first = 2, .last = 2, .sender = 2, .asked = true};
constexpr Passing kPingAnswer = {
    .keyword = "THEPING", .target = 3, .first = 1, .last = 2, .sender = 2};
constexpr Passing kAskJoin = {.keyword = "GETUSERIP",
                              .first = 2,
                              .last = 2,
                              .sender = 2,
                              .asked = true,
                              .asks = Question::join};
constexpr Passing kJoinAnswer = {
    .keyword = "OKUSERIP", .first = 2, .last = 2, .answers = Question::join};
constexpr Passing kAskFile = {.keyword = "GETIPFT",
                              .first = 2,
                              .last = 2,
                              .sender = 2,
                              .asked = true,
                              .asks = Question::file};
constexpr Passing kFileAnswer = {
    .keyword = "RETURNFT", .first = 2, .last = 2, .answers = Question::file};

constexpr auto kKeywords = std::to_array<Keyword>({
    {.keyword = kLogin, .leastFields = 2, .handler = logIn, .phase = Phase::greeting},
    {.keyword = "MOTD", .handler = messageOfTheDay},
    {.keyword = "ACTION", .leastFields = 2, .handler = act},
    {.keyword = "Message", .leastFields = 3, .handler = say},
    {.keyword = "PM", .leastFields = 3, .handler = privateMessage},
    {.keyword = "SOUND", .leastFields = 2, .handler = playSound},
    {.keyword = "[AW]", .handler = goAway, .price = kTagPrice},
    {.keyword = "[CS]", .handler = startHosting, .price = kTagPrice},
    {.keyword = "RETURNCS", .handler = comeBack, .price = kTagPrice},
    {.keyword = "GAME", .leastFields = 9, .handler = offerGame},
    {.keyword = "XCEPT", .leastFields = 3, .handler = passRow<kAccept>},
    {.keyword = "DECLINE", .leastFields = 3, .handler = passRow<kDecline>},
    {.keyword = "START", .leastFields = 2, .handler = passRow<kStart>},
    {.keyword = "INGAME", .handler = startGame, .price = kTagPrice},
    {.keyword = "RETURN", .handler = endGame, .price = kTagPrice},
    {.keyword = "USERIP", .leastFields = 3, .handler = passRow<kAskJoin>},
    {.keyword = "OKRETURNIP", .leastFields = 3, .handler = passRow<kJoinAnswer>},
    {.keyword = "GETPROFILE2", .leastFields = 3, .handler = passRow<kAskProfile>},
    {.keyword = "PROFILE", .leastFields = 15, .handler = passRow<kProfile>},
    {.keyword = "PROFILE2", .leastFields = 15, .handler = passRow<kProfile>},
    {.keyword = "PINGUSER", .leastFields = 3, .handler = passRow<kPing>},
    {.keyword = "RETURNPING", .leastFields = 4, .handler = passRow<kPingAnswer>},
    {.keyword = "GETIPFT", .leastFields = 3, .handler = passRow<kAskFile>},
    {.keyword = "OKUSERFT", .leastFields = 3, .handler = passRow<kFileAnswer>},
    {.keyword = "RequestOP", .leastFields = 4, .handler = requestStatus},
    {.keyword = "KICK", .leastFields = 2, .handler = kick},
    {.keyword = "BAN", .leastFields = 2, .handler = ban},
    {.keyword = "GETIP", .leastFields = 2, .handler = getAddress},
    {.keyword = "MSG", .leastFields = 2, .handler = messageToAll},
    {.keyword = "THEKICK", .leastFields = 5, .handler = kickWithProof},
    {.keyword = "IP", .leastFields = 2, .handler = tellAddress},
    {.keyword = "IPBAN", .leastFields = 2, .handler = tellBannedAddress, .phase = Phase::leaving},
});

const Keyword* find(std::string_view keyword) {
  const auto* found = std::ranges::find(kKeywords, keyword, &Keyword::keyword);
  return found == kKeywords.end() ? nullptr : found;
}

std::string_view keywordOf(std::string_view line) { return line.substr(0, line.find('\t')); }

}  // namespace

bool isLogin(std::string_view line) { return keywordOf(line) == kLogin; }

double priceOf(std::string_view line) {
  const Keyword* entry = find(keywordOf(line));
  const std::size_t more = line.size() / kBytesOfAPrice;
  return (entry == nullptr ? 1 : entry->price) + static_cast<double>(more);
}

void dispatch(Lobby& lobby, Client& client, std::string_view line) {
  const Fields fields = split(line);
  const Keyword* entry = find(fields[0]);
  if (entry == nullptr || fields.size() < entry->leastFields) return;
  if (client.phase == entry->phase) entry->handler(lobby, client, fields);
}

}  // namespace kelvaron::server
