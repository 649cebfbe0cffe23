// What the server knows of one client.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "server/connection.h"

namespace kelvaron::server {

/// Where a client stands: it has told no nickname yet, it is in the room, or it has been refused,
/// kicked or banned and is given a moment to close by itself.
enum class Phase { kGreeting, kMember, kLeaving };

struct Client {
  explicit Client(std::shared_ptr<Connection> its_connection)
      : connection(std::move(its_connection)) {}

  /// Puts lines in the client's queue, each with its line end.
  void send(std::string lines) const {
    connection->send(std::make_shared<const std::string>(std::move(lines)));
  }
  /// Its entry in the user list: the nickname and at most one tag, a game before hosting before
  /// being away.
  [[nodiscard]] std::string entry() const {
    return nick + (in_game ? "[IG]" : hosting ? "[CS]" : away ? "[AW]" : "");
  }

  std::shared_ptr<Connection> connection;
  Phase phase = Phase::kGreeting;
  Clock::time_point phase_ends{};  // for the two phases that do not last

  std::string nick;
  std::string told_address;  // what the client says its address is
  bool in_game = false;
  bool hosting = false;
  bool away = false;

  bool moderator = false;
  bool banned = false;  // just now, and has not told its address yet
  bool proof_running = false;
  long proofs_failed = 0;
};

}  // namespace kelvaron::server
