// Where the game engines and the game data lie: the eleven records of `kvconfig.cfg`.
//
// There is no cache: who needs a path reads the file anew, and so sees what the last Save wrote.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace kelvaron {

class Client;
class FilePort;

inline constexpr const char* kGameConfigFile = "kvconfig.cfg";

/// The records in the order of the file. A record that isn't set is empty.
struct GameConfig {
  std::string zdoomPath = {};
  /// A command's beginning: the location, with video switches behind it.
  std::string glZdoomCommand = {};
  std::string doomWad = {};
  std::string doom2Wad = {};
  std::string finalDoomWad = {};
  std::string plutoniaWad = {};
  std::string evilutionWad = {};
  std::string externalWadFolder = {};
  std::string externalWadFolder2 = {};
  std::string csServerPath = {};
  std::string csClientPath = {};

  bool operator==(const GameConfig&) const = default;
};

inline constexpr std::size_t kGameConfigRecords = 11;

/// The records as members, in the order of the file.
inline constexpr std::array<std::string GameConfig::*, kGameConfigRecords> kGameConfigOrder = {
    &GameConfig::zdoomPath,    &GameConfig::glZdoomCommand,    &GameConfig::doomWad,
    &GameConfig::doom2Wad,     &GameConfig::finalDoomWad,      &GameConfig::plutoniaWad,
    &GameConfig::evilutionWad, &GameConfig::externalWadFolder, &GameConfig::externalWadFolder2,
    &GameConfig::csServerPath, &GameConfig::csClientPath,
};

/// Records up to the folders of extra wads: what choosing and building a game reads.
inline constexpr std::size_t kGameRecords = 9;

/// A configuration, and how many of its records the text held.
struct ParsedGameConfig {
  GameConfig config;
  std::size_t records = 0;
};

/// Fields in the order of the records (see delimited_fields.h). Missing records stay empty.
ParsedGameConfig parseGameConfig(std::string_view text);

/// Eleven lines, each ended by CR LF. Nothing is quoted or escaped.
std::string formatGameConfig(const GameConfig& config);

/// Reads the file anew. Fault 53 when it is missing, 62 when it holds fewer records than there are,
/// 75 when it can't be read.
GameConfig loadGameConfig(FilePort& files);
/// Replaces the file whole. Faults as `FilePort::replace`.
void saveGameConfig(FilePort& files, const GameConfig& config);

/// What there is: missing records, and all of a file that can't be read, are empty.
GameConfig gameConfigAsItIs(FilePort& files);
/// For what the user does himself: reads the file anew, treats what is missing as empty, and says
/// so in one box, as it does of a file that holds fewer than `records` records.
GameConfig gameConfigForUser(Client& client, std::size_t records = kGameConfigRecords);

}  // namespace kelvaron
