// The switches that Kelvaron gives to engines, in the words of Chocolate Doom.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace kelvaron::engines {

/// What the command asks for can't be had; the text says why.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The most players of one game.
inline constexpr int kMostPlayers = 4;

enum class Engine {
  game,       // zdoom.exe
  glGame,     // zdoomgl.exe: the same, with switches for its picture
  netClient,  // doomcl.exe: the game of one who joins a server that stays
};

struct GameCommand {
  /// For the game, without the address.
  std::vector<std::string> arguments;
  /// Whose game to join; empty when none.
  std::string address;
};

/// Throws Refusal for a word that isn't known, lacks its value or contradicts another, and for game
/// files that aren't there or are none.
GameCommand inGameWords(Engine engine, const std::vector<std::string>& words);

}  // namespace kelvaron::engines
