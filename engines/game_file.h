// What a game file ("WAD") holds.
#pragma once

#include <string>
#include <vector>

namespace kelvaron::engines {

/// The names of what the file holds, as they stand in its directory. Throws std::runtime_error with
/// a text for the user when the file can't be read or is no game file.
std::vector<std::string> namesIn(const std::string& gameFile);

/// Whether the levels of a file with these names are those of episodes, as E2M3.
bool hasEpisodes(const std::vector<std::string>& names);

/// Which game Doomsday takes a file for: its word for that, and the name under which it looks for
/// the file.
struct Edition {
  std::string game;
  std::string fileName;
};

/// By what the file holds, whatever it is called. Throws as `namesIn` does.
Edition editionOf(const std::string& gameFile);

}  // namespace kelvaron::engines
