// The switches that Kelvaron gives to engines, read and checked.
#pragma once

#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace kelvaron::engines {

using Words = std::vector<std::string>;

/// What the command asks for can't be had, or has come to a bad end; the text says why.
class Refusal : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

enum class Engine {
  game,       // zdoom.exe
  glGame,     // zdoomgl.exe: the same, with switches for its picture
  netServer,  // doomsv.exe: a server that stays
  netClient,  // doomcl.exe: the game of one who joins such a server
};

struct GameCommand {
  /// In the words of Chocolate Doom, without what follows.
  Words chocolate;
  /// Empty where none was named.
  std::string iwad;
  Words files;
  /// "1" to "99", or episode and level in one, as "23"; empty where none was named.
  std::string level;
  /// How many play, the host included; 0 for nobody else's game and one's own.
  int players = 0;
  /// Whose game to join; empty when none.
  std::string address;
  /// Every other switch by its name, with its value.
  std::map<std::string, std::string, std::less<>> given;
};

/// Throws Refusal for a word that isn't known, lacks its value or contradicts another, and for game
/// files that aren't there or are none.
GameCommand readWords(Engine engine, const Words& words);

/// "2" and "3" of a level "23", the first episode where there is none.
std::pair<std::string, std::string> episodeAndLevel(const std::string& level);

}  // namespace kelvaron::engines
