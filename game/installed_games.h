// What is installed that games can be played with, so that nobody has to look for it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "game/game_config.h"

namespace kelvaron {

/// Folders in which to look, the best first; of one client (`client.lasting<GamePlaces>()`).
/// Without `engines`, where the adapters lie, nothing is found.
struct GamePlaces {
  std::string engines = {};
  std::vector<std::string> programs = {};
  std::vector<std::string> gameData = {};
  /// The user has been asked whether to take what is there.
  bool offered = false;
};

struct InstalledGames {
  GameConfig config;
  /// As a sentence has it: "Chocolate Doom and Freedoom".
  std::string names;
};

/// The adapters, if one of their engines is there, and the data of at least one game. Free data
/// stand in for Doom and Doom II.
std::optional<InstalledGames> findInstalled(const GamePlaces& places,
                                            const std::function<bool(const std::string&)>& exists);

}  // namespace kelvaron
