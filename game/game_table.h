// The ten games: a pair of engine and game each, by the key that travels in an offer.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "game/game_config.h"

namespace kelvaron {

struct Game {
  std::string_view key;
  /// What the host ticks, and what a guest reads.
  std::string_view caption;
  std::string_view displayName;
  std::string GameConfig::*engine;
  std::string GameConfig::*wad;
};

inline constexpr auto kGames = std::to_array<Game>({
    {"zdoom", "Zdoom / DOOM", "ZDOOM / DOOM", &GameConfig::zdoomPath, &GameConfig::doomWad},
    {"zdoom2", "Zdoom / DOOM2", "ZDOOM / DOOM2", &GameConfig::zdoomPath, &GameConfig::doom2Wad},
    {"zdoom3", "Zdoom / Final Doom", "ZDOOM / Final DOOM", &GameConfig::zdoomPath,
     &GameConfig::finalDoomWad},
    {"zdoom4", "Zdoom / Plutonia", "ZDOOM / Plutonia", &GameConfig::zdoomPath,
     &GameConfig::plutoniaWad},
    {"zdoom5", "Zdoom / Evilution", "ZDOOM / Evilution", &GameConfig::zdoomPath,
     &GameConfig::evilutionWad},
    {"gldoom", "ZGLdoom / DOOM", "GLDOOM / DOOM", &GameConfig::glZdoomCommand,
     &GameConfig::doomWad},
    {"gldoom2", "ZGLdoom / DOOM2", "GLDOOM / DOOM2", &GameConfig::glZdoomCommand,
     &GameConfig::doom2Wad},
    {"gldoom3", "ZGLdoom / Final Doom", "GLDOOM / Final DOOM", &GameConfig::glZdoomCommand,
     &GameConfig::finalDoomWad},
    {"gldoom4", "ZGLdoom Plutonia", "GLDOOM / Plutonia", &GameConfig::glZdoomCommand,
     &GameConfig::plutoniaWad},
    {"gldoom5", "ZGLdoom / Evilution", "GLDOOM / Evilution", &GameConfig::glZdoomCommand,
     &GameConfig::evilutionWad},
});

/// Whether engine and wad of the game are known on this machine.
inline bool canPlay(const Game& game, const GameConfig& config) {
  return !(config.*game.engine).empty() && !(config.*game.wad).empty();
}

/// The game of a key, or null for a key that isn't one of the ten.
constexpr const Game* findGame(std::string_view key) {
  const auto* const found = std::ranges::find(kGames, key, &Game::key);
  return found == kGames.end() ? nullptr : found;
}

}  // namespace kelvaron
