// What the server knows of one client.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "server/connection.h"
#include "server/questions.h"
#include "server/source.h"

namespace kelvaron::server {

/// Where a client stands: it has told no nickname yet, it is in the room, or it has been refused,
/// kicked or banned and is given a moment to close by itself.
enum class Phase { greeting, member, leaving };

struct Client {
  Client(std::shared_ptr<Connection> itsConnection, std::shared_ptr<Source> itsSource)
      : connection(std::move(itsConnection)), source(std::move(itsSource)) {}

  /// Puts lines in the client's queue, each with its line end.
  void send(std::string lines) const { connection->send(std::move(lines)); }
  /// Its entry in the user list: the nickname and at most one tag, a game before hosting before
  /// being away.
  std::string entry() const {
    return nick + (inGame ? "[IG]" : hosting ? "[CS]" : away ? "[AW]" : "");
  }

  std::shared_ptr<Connection> connection;
  std::shared_ptr<Source> source;
  Allowance allowance;
  Phase phase = Phase::greeting;
  Clock::time_point phaseEnds{};  // for the two phases that do not last
  bool loginWaits = false;        // a nickname is told, and its turn hasn't come
  std::optional<Clock::time_point> waitsForOldUntil;

  std::string nick;
  std::string toldAddress;  // what the client says its address is
  bool inGame = false;
  bool hosting = false;
  bool away = false;

  OpenQuestions questions;  // of this user's own

  bool moderator = false;
  std::optional<Clock::time_point> proofEnds;  // by then a moderator's nickname needs its proof
  bool banned = false;                         // just now, and has not told its address yet
  bool proofRunning = false;
  long proofsFailed = 0;
};

}  // namespace kelvaron::server
