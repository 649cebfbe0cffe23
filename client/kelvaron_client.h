// The whole client put together: the table of inbound keywords, and the forms of all folders.
#pragma once

#include <memory>
#include <span>

#include "session/client.h"

namespace kelvaron {

/// All inbound keywords in the order of the compare.
std::span<const InboundRow> inboundTable();

/// A client on these ports; edge and ports outlive it. `start` opens its login window.
std::unique_ptr<Client> makeClient(Edge& edge, const Ports& ports);

}  // namespace kelvaron
