// What arrives from the chat server: cut into lines and fields, each line given to its handler.
#pragma once

#include <chrono>
#include <span>
#include <string_view>

#include "platform/fault.h"
#include "session/protocol_line.h"

namespace kelvaron {

class Client;

/// What a handler of an inbound line works with.
struct InboundContext {
  Client& client;
  const ProtocolLine& line;
  /// The fault rule in force for the rest of this arrival. A handler runs its steps through it and
  /// may set another one.
  FaultRule& rule;
};

using InboundHandler = void (*)(InboundContext&);

/// A row of the table of inbound keywords.
struct InboundRow {
  std::string_view keyword;
  InboundHandler handler;
};

/// What is left to handle of one read: of all that the socket held at one moment.
struct ArrivalRead {
  /// From the beginning of a line on.
  std::string_view lines;
  /// The fault rule that these lines are under.
  FaultRule rule = FaultRule::stop();
};

/// Handles lines of a read and takes them off its front: cuts at every CR LF, drops what stands
/// behind the last one, and runs each line's handler. A line of an unknown keyword is passed over.
/// A fault ends the rest of the read, quietly but for a missing file (told once a minute at most
/// for each), unless a handler has set the rule that goes on. Ends early at `until`, behind the
/// line that is at work then, and when the client drops what arrived.
void handleArrival(
    Client& client, ArrivalRead& read, std::span<const InboundRow> table,
    std::chrono::steady_clock::time_point until = std::chrono::steady_clock::time_point::max());

}  // namespace kelvaron
