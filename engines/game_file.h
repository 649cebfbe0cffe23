// What a game file ("WAD") holds.
#pragma once

#include <string>
#include <vector>

namespace kelvaron::engines {

/// The names of what the file holds, as they stand in its directory. Throws std::runtime_error with
/// a text for the user when the file can't be read or is no game file.
std::vector<std::string> namesIn(const std::string& gameFile);

}  // namespace kelvaron::engines
