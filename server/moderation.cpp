// Who is a moderator, and what moderators can do. The client checks nothing, so all is checked
// here.
#include <cstdint>

#include "server/handlers.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::string_view kOnlyModerators = "Only moderators can do that.";

std::string who(const Client& client) {
  return forLog(client.nick) + " (" + client.connection->address() + ")";
}

/// `what` is for the log: what is asked for.
bool isGranted(Lobby& lobby, Client& client, const std::string& what) {
  if (client.moderator) return true;
  lobby.logRefusal(client, who(client) + ": " + what + " refused, no moderator");
  lobby.refuse(client, kOnlyModerators);
  return false;
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

/// Checks that the client is the moderator of its nickname, off the loop, then runs `proven` if it
/// is and still in the room.
template <class Proven>
void prove(Lobby& lobby, Client& client, std::string_view email, std::string_view password,
           const std::string& what, Proven proven) {
  using Outcome = Proofs::Outcome;
  const auto tooMany = [&lobby, asker = who(client), what](Client& told) {
    lobby.logRefusal(told, asker + ": " + what + " not looked at, too many tries");
    lobby.refuse(told, "Too many tries. Wait before you try again.");
  };
  if (client.proofRunning || client.proofsFailed >= lobby.settings().proofsPerConnection) {
    return tooMany(client);
  }
  const auto done = [&lobby, id = client.connection->id(), asker = who(client), what, proven,
                     tooMany](Outcome outcome, const std::string& error) {
    if (outcome != Outcome::tooMany) {
      lobby.log(asker + ": " + what + (outcome == Outcome::right ? " granted" : " refused") +
                (error.empty() ? "" : ": " + error));
    }
    Client* still = lobby.member(id);
    if (still == nullptr) return;
    still->proofRunning = false;
    switch (outcome) {
      case Outcome::right:
        still->proofEnds.reset();
        return proven(lobby, *still);
      case Outcome::wrong:
        ++still->proofsFailed;
        return lobby.refuse(*still, "Refused. Your request was logged.");
      case Outcome::tooMany:
        return tooMany(*still);
      case Outcome::failed:
        return lobby.refuse(*still, "Your request can't be checked at the moment.");
    }
  };
  client.proofRunning = lobby.proofs().ask({client.nick, std::string(trimmed(email)),
                                            std::string(password), client.connection->address()},
                                           lobby.records().moderator(client.nick), done);
  if (!client.proofRunning) tooMany(client);
}

void kickOut(Lobby& lobby, const std::string& by, Client& target, std::string_view reason) {
  lobby.dismiss(target, makeLine({"Kicked", by, reason}));
  lobby.log(forLog(target.nick) + " was kicked by " + forLog(by) + inBrackets(forLog(reason)));
  lobby.room().announce(target.nick + " was kicked by " + by + inBrackets(reason));
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
  lobby.logRefusal(client,
                   who(client) + ": kick of " + forLog(fields[1]) + " refused, no moderator");
  // A moderator who has not asked for the status yet is asked for the proof instead.
  if (lobby.records().moderator(client.nick) != nullptr) return client.send(makeLine({"Kicker"}));
  lobby.refuse(client, kOnlyModerators);
}

void kickWithProof(Lobby& lobby, Client& client, const Fields& fields) {
  const std::string user(fields[2]);
  prove(lobby, client, fields[4], fields[3], "kick of " + forLog(user),
        [user](Lobby& room, Client& asker) {
          Client* target = targetOf(room, asker, user);
          const std::string by = asker.nick;
          if (target != nullptr) kickOut(room, by, *target, "");
        });
}

void ban(Lobby& lobby, Client& client, const Fields& fields) {
  if (!isGranted(lobby, client, "ban of " + forLog(fields[1]))) return;
  const Client* target = targetOf(lobby, client, fields[1]);
  if (target == nullptr) return;
  const Ban ban{BanKind::user,       target->nick, target->connection->address(),
                target->toldAddress, client.nick,  std::string(reasonIn(fields))};
  const std::uint64_t asker = client.connection->id();
  lobby.records().addBan(ban, [&lobby, asker, nick = ban.nick] {
    const Client* still = lobby.member(asker);
    if (still == nullptr) return;
    lobby.refuse(*still, "The ban of " + nick +
                             " holds, but could not be stored. That will be tried again.");
  });
  lobby.log(forLog(ban.nick) + " (" + ban.address + ") was banned by " + forLog(ban.by) +
            inBrackets(forLog(ban.reason)));
  lobby.dropBanned(ban, target);
}

void getAddress(Lobby& lobby, Client& client, const Fields& fields) {
  if (!isGranted(lobby, client, "address of " + forLog(fields[1]))) return;
  const Client* target = targetOf(lobby, client, fields[1]);
  if (target == nullptr) return;
  lobby.log(who(client) + ": address of " + forLog(target->nick) + " told");
  lobby.askAddress(client, *target);
}

void messageToAll(Lobby& lobby, Client& client, const Fields& fields) {
  if (!isGranted(lobby, client, "message to all")) return;
  lobby.log(who(client) + ": message to all: " + forLog(fields[1]));
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
  lobby.records().noteToldAddress(client.nick, fields[1].substr(0, kToldAddressLimit));
}

}  // namespace kelvaron::server
