// The handlers of lines, one function a keyword. Each has at least the fields that the table in
// dispatch.cpp names, the keyword being field 0.
#pragma once

#include "server/client.h"
#include "server/line.h"
#include "server/lobby.h"

namespace kelvaron::server {

// chat.cpp
void log_in(Lobby& lobby, Client& client, const Fields& fields);
void message_of_the_day(Lobby& lobby, Client& client, const Fields& fields);
void say(Lobby& lobby, Client& client, const Fields& fields);
void act(Lobby& lobby, Client& client, const Fields& fields);
void play_sound(Lobby& lobby, Client& client, const Fields& fields);
void start_game(Lobby& lobby, Client& client, const Fields& fields);
void end_game(Lobby& lobby, Client& client, const Fields& fields);
void start_hosting(Lobby& lobby, Client& client, const Fields& fields);
void go_away(Lobby& lobby, Client& client, const Fields& fields);
void come_back(Lobby& lobby, Client& client, const Fields& fields);

// passing.cpp

/// How a line goes from one user to another: who gets it and what of it.
struct Passing {
  std::string_view keyword;  // that the receiver reads
  std::size_t target;        // the field that names the receiver
  std::size_t first;         // the fields that the receiver gets, from this one ...
  std::size_t last;          // ... to this one; none when it is less
  std::size_t sender;        // the field that names the sender, 0 for none
  bool asked;                // a user waits for it, so a receiver who is not there is told
};

void pass(Lobby& lobby, Client& client, const Fields& fields, const Passing& passing);
template <const Passing& Row>
void pass_row(Lobby& lobby, Client& client, const Fields& fields) {
  pass(lobby, client, fields, Row);
}
void private_message(Lobby& lobby, Client& client, const Fields& fields);
void offer_game(Lobby& lobby, Client& client, const Fields& fields);

// moderation.cpp
void request_status(Lobby& lobby, Client& client, const Fields& fields);
void kick(Lobby& lobby, Client& client, const Fields& fields);
void kick_with_proof(Lobby& lobby, Client& client, const Fields& fields);
void ban(Lobby& lobby, Client& client, const Fields& fields);
void get_address(Lobby& lobby, Client& client, const Fields& fields);
void message_to_all(Lobby& lobby, Client& client, const Fields& fields);
void tell_address(Lobby& lobby, Client& client, const Fields& fields);
void tell_banned_address(Lobby& lobby, Client& client, const Fields& fields);

}  // namespace kelvaron::server
