// Coming in, talking in the room, and the tags behind a list entry.
#include "server/handlers.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

void set_tag(Lobby& lobby, bool& tag, bool value) {
  if (tag == value) return;
  tag = value;
  lobby.room().list_changed();
}

}  // namespace

void log_in(Lobby& lobby, Client& client, const Fields& fields) {
  const std::string& address = client.connection->address();
  const std::string_view refusal = lobby.login_refusal(fields[1], address);
  if (!refusal.empty()) {
    lobby.log(address + " is refused as " + std::string(fields[1]) + ": " + std::string(refusal));
    lobby.dismiss(client, make_line({refusal}));
    return;
  }
  client.nick = fields[1];
  if (fields.size() > 2) client.told_address = fields[2];
  lobby.log(client.nick + " (" + address + ") has entered");
  lobby.enter(client);
}

void message_of_the_day(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  if (!lobby.motd().empty()) client.send(make_line({"MOTD", lobby.motd()}));
}

// Nobody speaks in another's name: the line's own name field is not used.
void say(Lobby& lobby, Client& client, const Fields& fields) {
  lobby.room().send_to_all(make_line({"Message", client.nick + ": ", fields[2]}));
}

void act(Lobby& lobby, Client& client, const Fields& fields) {
  std::string text(fields[1]);
  if (text != client.nick && !text.starts_with(client.nick + " ")) {
    text.insert(0, client.nick + " ");
  }
  lobby.room().send_to_all(status_line(Colour::kAction, text));
}

void play_sound(Lobby& lobby, Client& /*client*/, const Fields& fields) {
  if (is_safe_sound(fields[1])) lobby.room().send_to_all(make_line({"PLAYSOUND", fields[1]}));
}

void start_game(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  set_tag(lobby, client.in_game, true);
}

void end_game(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  set_tag(lobby, client.in_game, false);
}

void start_hosting(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  set_tag(lobby, client.hosting, true);
}

void go_away(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  set_tag(lobby, client.away, true);
}

// A client says the same when it is back from hosting and when its user is back.
void come_back(Lobby& lobby, Client& client, const Fields& /*fields*/) {
  set_tag(lobby, client.hosting, false);
  set_tag(lobby, client.away, false);
}

}  // namespace kelvaron::server
