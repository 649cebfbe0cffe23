// The texts from which engines are started, and the options that host and guests share.
#pragma once

#include <string>
#include <string_view>

#include "game/game_options.h"
#include "game/game_table.h"
#include "session/game_offer.h"

namespace kelvaron {

/// Stands for no external wad, and for no skin. Compared letter for letter.
inline constexpr std::string_view kNone = "NONE";

/// The host's options, with a blank before each; `programFolder` is where a demo goes.
std::string hostOptions(const GameOptions& options, std::string_view programFolder);
/// The guests' options: no demo, and a blank of its own behind " -extratic".
std::string guestOptions(const GameOptions& options);

/// Where an external wad lies: the configured folder, "\\" and the name.
std::string externalWadPath(std::string_view wad, const GameConfig& config);

/// Engine and game of the host's command: location, " -IWAD ", wad.
std::string hostBase(const Game& game, const GameConfig& config);

/// The host's command: `begun` (base and options), " -host " and the number of players, the host
/// included, and the external wad.
std::string hostCommand(std::string_view begun, int players, std::string_view wad,
                        const GameConfig& config);
/// The command of a game alone.
std::string soloCommand(std::string_view begun, std::string_view wad, const GameConfig& config);

/// The guest's command, from the guest's own configuration. It ends in CR LF. A key that isn't one
/// of the ten leaves engine and game out.
std::string guestCommand(const GameOffer& offer, const GameConfig& config);

}  // namespace kelvaron
