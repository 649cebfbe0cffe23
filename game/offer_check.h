// What is unusual about an offer: what no Kelvaron would have sent, and what can't work here.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "game/launch_command.h"

namespace kelvaron {

/// A sentence for each thing, each ended by CR LF; empty when nothing is unusual.
/// `isOnDisk` tells whether there is a file at a path (parted by "\\").
std::string unusualAbout(const GameOffer& offer, const GameConfig& config,
                         const std::function<bool(const std::string& path)>& isOnDisk);

/// Whether a text is an address of the network: dotted decimal, or an IPv6 text.
bool isAddress(std::string_view text);

}  // namespace kelvaron
