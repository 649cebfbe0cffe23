// The room: who is in it, the user list, and lines for everybody.
#pragma once

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>
#include <map>
#include <string>
#include <string_view>

#include "base/liveness.h"
#include "server/client.h"
#include "server/statistics.h"

namespace kelvaron::server {

class Room {
 public:
  Room(asio::io_context& io, const Settings& settings, Statistics& statistics, Held held)
      : timer_(io), settings_(settings), statistics_(statistics), held_(std::move(held)) {}

  /// The member of that nickname, without regard to case, or nothing.
  Client* find(std::string_view nick) const;
  /// The member whose nickname looks like that one.
  Client* findLike(std::string_view nick) const;
  /// The member that a list entry or a shown name means: a tag and the moderator's mark are left
  /// out.
  Client* findShown(std::string_view shown) const;

  /// Adds a client whose nickname is set and looks like nobody's, and sends it the list at once.
  void join(Client& client);
  void leave(const Client& client);

  /// Whole lines, to every member; announcements that wait go before them.
  void sendToAll(std::string_view lines);
  /// Sends a line with the sound for coming and going to all: soon, together with the list, but
  /// before any line that goes to all after it.
  void announce(std::string_view text);
  /// Sends the list to all, together with the changes that follow within a short time, and as often
  /// as the bytes for lists last.
  void listChanged();

 private:
  const Piece& list();
  void setTimer(Clock::duration time);
  Clock::duration gatherTime() const;
  void sendList();
  void sendAnnouncements();

  std::map<std::string, Client*> members_;  // by likeness
  Piece list_;                              // empty when it is to be built anew
  std::shared_ptr<Chunk> lines_;            // the newest lines for all
  bool listDue_ = false;
  std::string announcements_;  // whole lines that wait for the timer
  asio::steady_timer timer_;
  bool timerSet_ = false;
  Clock::time_point nextList_{};
  const Settings& settings_;
  Statistics& statistics_;
  Held held_;
  Liveness alive_;
};

}  // namespace kelvaron::server
