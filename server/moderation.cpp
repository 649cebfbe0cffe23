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

bool is_granted(const Lobby& lobby, const Client& client) {
  if (!client.moderator) lobby.refuse(client, kOnlyModerators);
  return client.moderator;
}

Client* target_of(Lobby& lobby, const Client& client, std::string_view shown) {
  Client* target = lobby.room().find_shown(shown);
  if (target == nullptr) {
    lobby.refuse(client, std::string(bare_nick(shown)) + " is not on Kelvaron.");
  }
  return target;
}

std::string_view reason_in(const Fields& fields) {
  return fields.size() > 2 ? fields[2] : std::string_view();
}

std::string in_brackets(std::string_view reason) {
  return reason.empty() ? std::string() : " (" + std::string(reason) + ")";
}

const Moderator* find_moderator(const std::vector<Moderator>& moderators, std::string_view nick) {
  const auto found = std::find_if(moderators.begin(), moderators.end(), [&](const Moderator& each) {
    return fold(each.nick) == fold(nick);
  });
  return found == moderators.end() ? nullptr : &*found;
}

bool is_proof(const Store& store, const std::string& nick, const std::string& email,
              const std::string& password) {
  const std::vector<Moderator> moderators = store.moderators();
  const Moderator* moderator = find_moderator(moderators, nick);
  return moderator != nullptr && fold(moderator->email) == fold(email) &&
         is_password(moderator->hash, password);
}

/// Checks that the client is the moderator of its nickname, off the loop, then runs `proven` if it
/// is and still in the room.
template <class Proven>
void prove(Lobby& lobby, Client& client, std::string_view email, std::string_view password,
           std::string what, Proven proven) {
  const std::string who = client.nick + " (" + client.connection->address() + ")";
  if (!lobby.may_prove(client)) {
    lobby.log(who + ": " + what + " not looked at, too many tries");
    return lobby.refuse(client, "Too many tries. Wait before you try again.");
  }
  client.proof_running = true;
  const auto job = [store = lobby.store(), nick = client.nick, mail = std::string(trimmed(email)),
                    secret = std::string(password)] { return is_proof(store, nick, mail, secret); };
  lobby.worker().run(job, [&lobby, id = client.connection->id(), who, what = std::move(what),
                           proven](std::optional<bool> right, const std::string& error) {
    const bool ok = right.value_or(false);
    lobby.log(who + ": " + what + (ok ? " granted" : " refused") +
              (error.empty() ? "" : ": " + error));
    Client* asker = lobby.member(id);
    if (asker == nullptr) return;
    asker->proof_running = false;
    if (ok) return proven(lobby, *asker);
    if (error.empty()) lobby.proof_failed(*asker);
    lobby.refuse(*asker, error.empty() ? "Refused. Your request was logged."
                                       : "Your request can't be checked at the moment.");
  });
}

void kick_out(Lobby& lobby, const std::string& by, Client& target, std::string_view reason) {
  lobby.dismiss(target, make_line({"Kicked", by, reason}));
  const std::string text = target.nick + " was kicked by " + by + in_brackets(reason);
  lobby.log(text);
  lobby.room().announce(text);
}

}  // namespace

void request_status(Lobby& lobby, Client& client, const Fields& fields) {
  if (client.moderator) return lobby.refuse(client, "You are a moderator already.");
  prove(lobby, client, fields[2], fields[3], "moderator status", [](Lobby&, Client& asker) {
    if (asker.moderator) return;
    asker.moderator = true;
    asker.send(grant_line());
  });
}

void kick(Lobby& lobby, Client& client, const Fields& fields) {
  if (client.moderator) {
    Client* target = target_of(lobby, client, fields[1]);
    // By value: a moderator may kick himself.
    const std::string by = client.nick;
    if (target != nullptr) kick_out(lobby, by, *target, reason_in(fields));
    return;
  }
  // A moderator who has not asked for the status yet is asked for the proof instead.
  const auto job = [store = lobby.store(), nick = client.nick] {
    return find_moderator(store.moderators(), nick) != nullptr;
  };
  lobby.worker().run(job, [&lobby, id = client.connection->id()](std::optional<bool> known,
                                                                 const std::string& error) {
    if (!error.empty()) lobby.log(error);
    Client* asker = lobby.member(id);
    if (asker == nullptr) return;
    if (known.value_or(false)) return asker->send(make_line({"Kicker"}));
    lobby.refuse(*asker, kOnlyModerators);
  });
}

void kick_with_proof(Lobby& lobby, Client& client, const Fields& fields) {
  const std::string user(fields[2]);
  prove(lobby, client, fields[4], fields[3], "kick of " + user, [user](Lobby& room, Client& asker) {
    Client* target = target_of(room, asker, user);
    const std::string by = asker.nick;
    if (target != nullptr) kick_out(room, by, *target, "");
  });
}

void ban(Lobby& lobby, Client& client, const Fields& fields) {
  if (!is_granted(lobby, client)) return;
  Client* target = target_of(lobby, client, fields[1]);
  if (target == nullptr) return;
  const Ban ban{BanKind::kUser,
                target->nick,
                target->connection->address(),
                target->told_address.substr(0, kToldAddressLimit),
                client.nick,
                std::string(reason_in(fields))};
  lobby.add_ban(ban);
  target->banned = true;
  // The client closes on `BANUSER`, so the question for its address goes first.
  lobby.dismiss(*target, make_line({"BANIP"}) + make_line({"BANUSER", ban.by, ban.reason}));
  const std::string text = ban.nick + " was banned by " + ban.by + in_brackets(ban.reason);
  lobby.log(text);
  lobby.room().announce(text);
  const auto job = [store = lobby.store(), ban] {
    store.add_ban(ban);
    return true;
  };
  lobby.worker().run(job, [&lobby, id = client.connection->id(), ban](
                              std::optional<bool> /*stored*/, const std::string& error) {
    // The bans may have been read anew between the order and its end.
    lobby.add_ban(ban);
    if (error.empty()) return;
    lobby.log(error);
    const Client* asker = lobby.member(id);
    if (asker == nullptr) return;
    lobby.refuse(*asker,
                 "The ban of " + ban.nick + " could not be stored: it ends with the server.");
  });
}

void get_address(Lobby& lobby, Client& client, const Fields& fields) {
  if (!is_granted(lobby, client)) return;
  const Client* target = target_of(lobby, client, fields[1]);
  if (target != nullptr) lobby.ask_address(client, *target);
}

void message_to_all(Lobby& lobby, Client& client, const Fields& fields) {
  if (!is_granted(lobby, client)) return;
  lobby.room().send_to_all(
      status_line(Colour::kServer, "Message from " + client.nick + ": " + std::string(fields[1])));
}

void tell_address(Lobby& lobby, Client& client, const Fields& fields) {
  lobby.address_told(client, fields[1].substr(0, kToldAddressLimit));
}

// Any refused or kicked client can send this line too; only a banned one changes something by it.
void tell_banned_address(Lobby& lobby, Client& client, const Fields& fields) {
  if (!client.banned) return;
  client.banned = false;
  const auto job = [store = lobby.store(), nick = client.nick,
                    told = std::string(fields[1].substr(0, kToldAddressLimit))] {
    store.note_told_address(nick, told);
    return true;
  };
  lobby.worker().run(job, [&lobby](std::optional<bool> /*noted*/, const std::string& error) {
    if (!error.empty()) lobby.log(error);
  });
}

}  // namespace kelvaron::server
