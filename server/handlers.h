// The handlers of lines, one function a keyword. Each has at least the fields that the table in
// dispatch.cpp names, the keyword being field 0.
#pragma once

#include "server/client.h"
#include "server/line.h"
#include "server/lobby.h"

namespace kelvaron::server {

/// So much is kept of an address that a client tells: more than any has.
inline constexpr std::size_t kToldAddressLimit = 64;

// chat.cpp
void logIn(Lobby& lobby, Client& client, const Fields& fields);
void messageOfTheDay(Lobby& lobby, Client& client, const Fields& fields);
void say(Lobby& lobby, Client& client, const Fields& fields);
void act(Lobby& lobby, Client& client, const Fields& fields);
void playSound(Lobby& lobby, Client& client, const Fields& fields);
void startGame(Lobby& lobby, Client& client, const Fields& fields);
void endGame(Lobby& lobby, Client& client, const Fields& fields);
void startHosting(Lobby& lobby, Client& client, const Fields& fields);
void goAway(Lobby& lobby, Client& client, const Fields& fields);
void comeBack(Lobby& lobby, Client& client, const Fields& fields);

// passing.cpp

/// How a line goes from one user to another: who gets it and what of it.
struct Passing {
  std::string_view keyword;           // that the receiver reads
  std::size_t target = 1;             // the field that names the receiver
  std::size_t first = 1;              // the fields that the receiver gets, from this one ...
  std::size_t last = 0;               // ... to this one; none when it is less
  std::size_t sender = 0;             // the field that names the sender, 0 for none
  bool asked = false;                 // a user waits for it, so a receiver who is not there is told
  Question asks = Question::none;     // to be answered once by who gets it
  Question answers = Question::none;  // goes only to who has asked that
  bool plain = false;                 // without the mark: a host looks the guest up in its list
};

void pass(Lobby& lobby, Client& client, const Fields& fields, const Passing& passing);
template <const Passing& Row>
void passRow(Lobby& lobby, Client& client, const Fields& fields) {
  pass(lobby, client, fields, Row);
}
void privateMessage(Lobby& lobby, Client& client, const Fields& fields);
void offerGame(Lobby& lobby, Client& client, const Fields& fields);

// moderation.cpp
void requestStatus(Lobby& lobby, Client& client, const Fields& fields);
void kick(Lobby& lobby, Client& client, const Fields& fields);
void kickWithProof(Lobby& lobby, Client& client, const Fields& fields);
void ban(Lobby& lobby, Client& client, const Fields& fields);
void getAddress(Lobby& lobby, Client& client, const Fields& fields);
void messageToAll(Lobby& lobby, Client& client, const Fields& fields);
void tellAddress(Lobby& lobby, Client& client, const Fields& fields);
void tellBannedAddress(Lobby& lobby, Client& client, const Fields& fields);

}  // namespace kelvaron::server
