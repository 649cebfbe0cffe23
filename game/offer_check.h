// What is unusual about an offer: what no Kelvaron would have sent, and what can't work here.
#pragma once

#include <string>
#include <string_view>

#include "game/launch_command.h"

namespace kelvaron {

/// A sentence for each thing, each ended by CR LF; empty when nothing is unusual.
std::string unusualAbout(const GameOffer& offer, const GameConfig& config);

/// Whether a text is an address of the network: dotted decimal, or an IPv6 text.
bool isAddress(std::string_view text);

}  // namespace kelvaron
