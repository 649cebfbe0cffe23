// Coming in, talking in the room, and the tags behind a list entry.
#include "server/handlers.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

void setTag(Lobby& lobby, bool& tag, bool value) {
  if (tag == value) return;
  tag = value;
  lobby.room().listChanged();
}

}  // namespace

void logIn(Lobby& lobby, Client& client, const Fields& fields) {
  const std::string& address = client.connection->address();
  const std::string_view refusal = lobby.loginRefusal(fields[1], address);
  if (!refusal.empty()) {
    lobby.logRefusal(client,
                     address + " is refused as " + forLog(fields[1]) + ": " + std::string(refusal));
    lobby.dismiss(client, makeLine({refusal}));
    return;
  }
  client.nick = fields[1];
  if (fields.size() > 2) client.toldAddress = fields[2].substr(0, kToldAddressLimit);
  lobby.log(forLog(client.nick) + " (" + address + ") has entered");
  lobby.enter(client);
}

void messageOfTheDay(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  const std::string& text = lobby.records().motd();
  if (!text.empty()) client.send(motdLine(text));
}

// Nobody speaks in another's name: the line's own name field is not used.
void say(Lobby& lobby, Client& client, const Fields& fields) {
  lobby.room().sendToAll(makeLine({"Message", client.nick + ": ", fields[2]}));
}

void act(Lobby& lobby, Client& client, const Fields& fields) {
  std::string text(fields[1]);
  if (text != client.nick && !text.starts_with(client.nick + " ")) {
    text.insert(0, client.nick + " ");
  }
  lobby.room().sendToAll(actionLine(text));
}

void playSound(Lobby& lobby, Client& /*client*/, const Fields& fields) {
  if (isSafeSound(fields[1])) lobby.room().sendToAll(makeLine({"PLAYSOUND", fields[1]}));
}

void startGame(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  setTag(lobby, client.inGame, true);
}

void endGame(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  setTag(lobby, client.inGame, false);
}

void startHosting(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  setTag(lobby, client.hosting, true);
}

void goAway(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  setTag(lobby, client.away, true);
}

// A client says the same when it is back from hosting and when its user is back.
void comeBack(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  setTag(lobby, client.hosting, false);
  setTag(lobby, client.away, false);
}

}  // namespace kelvaron::server
