// Lines from one user to another.
#include <algorithm>
#include <charconv>

#include "server/handlers.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::size_t kMostGuests = 6;
constexpr std::size_t kGameTail = 6;  // game key; wad; skin; guest arguments; address; host

// A client names its user with or without the moderator's mark; any other name is a pretence, and
// so is the mark of somebody who isn't one.
std::string senderName(const Client& client, std::string_view told) {
  const std::string marked = std::string(kModeratorMark) + client.nick;
  return client.moderator && told == marked ? marked : client.nick;
}

void tellAbsent(Lobby& lobby, const Client& client, std::string_view shown) {
  lobby.refuse(client, std::string(bareNick(shown)) + " is not on Kelvaron.");
}

}  // namespace

void pass(Lobby& lobby, Client& client, const Fields& fields, const Passing& passing) {
  Client* target = lobby.room().findShown(fields[passing.target]);
  if (target == nullptr) {
    if (passing.asked) tellAbsent(lobby, client, fields[passing.target]);
    return;
  }
  const Clock::time_point now = Clock::now();
  if (passing.answers != Question::none &&
      !target->questions.takeAnswer(passing.answers, client.connection->id(), now)) {
    return;
  }
  if (passing.asks != Question::none) {
    client.questions.ask(passing.asks, target->connection->id(), now);
  }
  const std::string sender = passing.sender == 0 ? std::string()
                             : passing.plain     ? client.nick
                                                 : senderName(client, fields[passing.sender]);
  Fields passed = {passing.keyword};
  for (std::size_t i = passing.first; i <= passing.last; ++i) {
    passed.push_back(i == passing.sender ? std::string_view(sender) : fields[i]);
  }
  target->send(makeLine(passed));
}

void privateMessage(Lobby& lobby, Client& client, const Fields& fields) {
  const Client* target = lobby.room().findShown(fields[1]);
  if (target == nullptr) return tellAbsent(lobby, client, fields[1]);
  const std::string_view told = fields.size() > 3 ? fields[3] : std::string_view();
  target->send(makeLine({"PM", senderName(client, told), fields[2]}));
}

void offerGame(Lobby& lobby, Client& client, const Fields& fields) {
  std::size_t guests = kMostGuests + 1;
  const std::string_view digits = fields[1];
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), guests);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size()) return;
  // No guest still takes one field, an empty one.
  const std::size_t tail = 2 + std::max<std::size_t>(guests, 1);
  if (guests > kMostGuests || fields.size() < tail + kGameTail) return;

  const std::string host = senderName(client, fields[tail + kGameTail - 1]);
  Fields offer = {"GAME"};
  offer.insert(offer.end(), fields.begin() + static_cast<std::ptrdiff_t>(tail),
               fields.begin() + static_cast<std::ptrdiff_t>(tail + kGameTail - 1));
  offer.push_back(host);
  const std::string line = makeLine(offer);

  std::vector<const Client*> asked;
  for (std::size_t i = 2; i < 2 + guests; ++i) {
    const Client* guest = lobby.room().findShown(fields[i]);
    if (guest == nullptr) {
      tellAbsent(lobby, client, fields[i]);
    } else if (std::find(asked.begin(), asked.end(), guest) == asked.end()) {
      asked.push_back(guest);
      guest->send(line);
    }
  }
}

}  // namespace kelvaron::server
