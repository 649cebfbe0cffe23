// What arrives from the chat server: cut into lines and fields, each line given to its handler.
#pragma once

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

/// What a turn leaves of an arrival when its lines have taken 10 ms.
struct ArrivalRest {
  /// A part of what arrived, from the beginning of a line on; empty when all was handled.
  std::string_view lines;
  /// The fault rule that these lines are under.
  FaultRule rule;
};

/// Handles all that arrived in one read: cuts it at every CR LF, drops what stands behind the last
/// one, and runs each line's handler. A line of an unknown keyword is passed over. A fault ends the
/// rest of the read, quietly but for a missing file (told once a minute at most), unless a handler
/// has set the rule that goes on. `rule` is the one to begin with: of a new read `stop`, of a rest
/// what came with it.
ArrivalRest handleArrival(Client& client, std::string_view received,
                          std::span<const InboundRow> table, FaultRule rule = FaultRule::stop());

}  // namespace kelvaron
