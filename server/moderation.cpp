// Who is a moderator, and what moderators can do. The client checks nothing, so all is checked
// here.
#include <algorithm>

#include "server/handlers.h"
#include "server/password.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::string_view kOnlyModerators = "Only moderators can do that.";
constexpr std::size_t kToldAddressLimit = 64;

bool isGranted(const Lobby& lobby, const Client& client) {
  if (!client.moderator) lobby.refuse(client, kOnlyModerators);
  return client.moderator;
}

Client* targetOf(Lobby& lobby, const Client& client, std::string_view shown) {
  Client* target = lobby.room().findShown(shown);
  if (target == nullptr) {
    lobby.refuse(client, std::string(bareNick(shown)) + " is not on Kelvaron.");
  }
  return target;
}

std::string_view reasonIn(const Fields& fields) {
  return fields.size() > 2 ? fields[2] : std::string_view();
}

std::string inBrackets(std::string_view reason) {
  return reason.empty() ? std::string() : " (" + std::string(reason) + ")";
}

const Moderator* findModerator(const std::vector<Moderator>& moderators, std::string_view nick) {
  const auto found = std::find_if(moderators.begin(), moderators.end(), [&](const Moderator& each) {
    return fold(each.nick) == fold(nick);
  });
  return found == moderators.end() ? nullptr : &*found;
}

bool isProof(const Store& store, const std::string& nick, const std::string& email,
             const std::string& password) {
  const std::vector<Moderator> moderators = store.moderators();
  const Moderator* moderator = findModerator(moderators, nick);
  return moderator != nullptr && fold(moderator->email) == fold(email) &&
         isPassword(moderator->hash, password);
}

/// Checks that the client is the moderator of its nickname, off the loop, then runs `proven` if it
/// is and still in the room.
template <class Proven>
void prove(Lobby& lobby, Client& client, std::string_view email, std::string_view password,
           std::string what, Proven proven) {
  const std::string who = client.nick + " (" + client.connection->address() + ")";
  if (!lobby.mayProve(client)) {
    lobby.log(who + ": " + what + " not looked at, too many tries");
    return lobby.refuse(client, "Too many tries. Wait before you try again.");
  }
  client.proofRunning = true;
  const auto job = [store = lobby.store(), nick = client.nick, mail = std::string(trimmed(email)),
                    secret = std::string(password)] { return isProof(store, nick, mail, secret); };
  lobby.worker().run(job, [&lobby, id = client.connection->id(), who, what = std::move(what),
                           proven](std::optional<bool> right, const std::string& error) {
    const bool ok = right.value_or(false);
    lobby.log(who + ": " + what + (ok ? " granted" : " refused") +
              (error.empty() ? "" : ": " + error));
    Client* asker = lobby.member(id);
    if (asker == nullptr) return;
    asker->proofRunning = false;
    if (ok) return proven(lobby, *asker);
    if (error.empty()) lobby.proofFailed(*asker);
    lobby.refuse(*asker, error.empty() ? "Refused. Your request was logged."
                                       : "Your request can't be checked at the moment.");
  });
}

void kickOut(Lobby& lobby, const std::string& by, Client& target, std::string_view reason) {
  lobby.dismiss(target, makeLine({"Kicked", by, reason}));
  const std::string text = target.nick + " was kicked by " + by + inBrackets(reason);
  lobby.log(text);
  lobby.room().announce(text);
}

}  // namespace

void requestStatus(Lobby& lobby, Client& client, const Fields& fields) {
  if (client.moderator) return lobby.refuse(client, "You are a moderator already.");
  prove(lobby, client, fields[2], fields[3], "moderator status", [](Lobby&, Client& asker) {
    if (asker.moderator) return;
    asker.moderator = true;
    asker.send(grantLine());
  });
}

void kick(Lobby& lobby, Client& client, const Fields& fields) {
  if (client.moderator) {
    Client* target = targetOf(lobby, client, fields[1]);
    // By value: a moderator may kick himself.
    const std::string by = client.nick;
    if (target != nullptr) kickOut(lobby, by, *target, reasonIn(fields));
    return;
  }
  // A moderator who has not asked for the status yet is asked for the proof instead.
  const auto job = [store = lobby.store(), nick = client.nick] {
    return findModerator(store.moderators(), nick) != nullptr;
  };
  lobby.worker().run(job, [&lobby, id = client.connection->id()](std::optional<bool> known,
                                                                 const std::string& error) {
    if (!error.empty()) lobby.log(error);
    Client* asker = lobby.member(id);
    if (asker == nullptr) return;
    if (known.value_or(false)) return asker->send(makeLine({"Kicker"}));
    lobby.refuse(*asker, kOnlyModerators);
  });
}

void kickWithProof(Lobby& lobby, Client& client, const Fields& fields) {
  const std::string user(fields[2]);
  prove(lobby, client, fields[4], fields[3], "kick of " + user, [user](Lobby& room, Client& asker) {
    Client* target = targetOf(room, asker, user);
    const std::string by = asker.nick;
    if (target != nullptr) kickOut(room, by, *target, "");
  });
}

void ban(Lobby& lobby, Client& client, const Fields& fields) {
  if (!isGranted(lobby, client)) return;
  Client* target = targetOf(lobby, client, fields[1]);
  if (target == nullptr) return;
  const Ban ban{BanKind::user,
                target->nick,
                target->connection->address(),
                target->toldAddress.substr(0, kToldAddressLimit),
                client.nick,
                std::string(reasonIn(fields))};
  lobby.addBan(ban);
  target->banned = true;
  // The client closes on `BANUSER`, so the question for its address goes first.
  lobby.dismiss(*target, makeLine({"BANIP"}) + makeLine({"BANUSER", ban.by, ban.reason}));
  const std::string text = ban.nick + " was banned by " + ban.by + inBrackets(ban.reason);
  lobby.log(text);
  lobby.room().announce(text);
  const auto job = [store = lobby.store(), ban] {
    store.addBan(ban);
    return true;
  };
  lobby.worker().run(job, [&lobby, id = client.connection->id(), ban](
                              std::optional<bool> /*stored*/, const std::string& error) {
    // The bans may have been read anew between the order and its end.
    lobby.addBan(ban);
    if (error.empty()) return;
    lobby.log(error);
    const Client* asker = lobby.member(id);
    if (asker == nullptr) return;
    lobby.refuse(*asker,
                 "The ban of " + ban.nick + " could not be stored: it ends with the server.");
  });
}

void getAddress(Lobby& lobby, Client& client, const Fields& fields) {
  if (!isGranted(lobby, client)) return;
  const Client* target = targetOf(lobby, client, fields[1]);
  if (target != nullptr) lobby.askAddress(client, *target);
}

void messageToAll(Lobby& lobby, Client& client, const Fields& fields) {
  if (!isGranted(lobby, client)) return;
  lobby.room().sendToAll(
      statusLine(Colour::kServer, "Message from " + client.nick + ": " + std::string(fields[1])));
}

void tellAddress(Lobby& lobby, Client& client, const Fields& fields) {
  lobby.addressTold(client, fields[1].substr(0, kToldAddressLimit));
}

// Any refused or kicked client can send this line too; only a banned one changes something by it.
void tellBannedAddress(Lobby& lobby, Client& client, const Fields& fields) {
  if (!client.banned) return;
  client.banned = false;
  const auto job = [store = lobby.store(), nick = client.nick,
                    told = std::string(fields[1].substr(0, kToldAddressLimit))] {
    store.noteToldAddress(nick, told);
    return true;
  };
  lobby.worker().run(job, [&lobby](std::optional<bool> /*noted*/, const std::string& error) {
    if (!error.empty()) lobby.log(error);
  });
}

}  // namespace kelvaron::server
