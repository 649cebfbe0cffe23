// What comes from the chat server, in its order: lines, and behind them the end of the connection.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "base/non_copyable.h"
#include "platform/event_loop.h"
#include "session/dispatch.h"

namespace kelvaron {

/// The one owner of the order. The socket hands over what it has when the queue has handled what
/// came before; what it holds meanwhile makes the server wait. Lines of one turn take 10 ms, and
/// the one at work then; the rest goes on in the next turn of the loop, so a flood leaves turns for
/// the user's keys. Arrivals don't nest: while a handler's box is open, all else waits.
class ArrivalQueue : NonCopyable {
 public:
  ArrivalQueue(Client& client, std::span<const InboundRow> table)
      : client_(client), table_(table) {}

  /// Lines can be read from the socket.
  void arrived();
  /// The server has closed the connection behind all that arrived.
  void closed();
  /// The connection has failed, or was not made.
  void failed(int number, const std::string& description);

  /// The connection is closed from this side: nothing more of it is read, and its end is nobody's
  /// business. What was read already has its turn.
  void connectionClosed() { end_.reset(); }
  /// The user has left the connection: nothing of it counts any more.
  void drop();

  /// The rest of what is being handled counts no more.
  bool dropped() const { return dropped_; }
  /// A line's handler is at work.
  bool handling() const { return handling_; }
  /// How often all that had arrived was handled.
  std::uint64_t handled() const { return handled_; }

 private:
  struct Read {
    std::string bytes;
    std::size_t done = 0;
    FaultRule rule = FaultRule::stop();
  };
  struct End {
    std::optional<int> error;
    std::string description;
  };

  void comes(End end);
  void turn();
  bool handleReads();

  Client& client_;
  std::span<const InboundRow> table_;
  std::optional<Read> read_;  // what the turn before left
  std::optional<End> end_;
  bool handling_ = false;
  bool dropped_ = false;
  std::uint64_t handled_ = 0;
  std::unique_ptr<LoopWatch> nextTurn_;
};

}  // namespace kelvaron
