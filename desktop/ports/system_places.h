// Where this system has what the program works with.
#pragma once

#include <string>

#include "game/installed_games.h"
#include "native/program_folders.h"

namespace kelvaron {

/// The folders of a program that lies in `program`, in UTF-8.
ProgramFolders foldersOfProgram(const std::string& program);

/// Where the adapters in the folder `engines`, in UTF-8, look for engines, and their script for
/// game data; nothing where the system has no adapters.
GamePlaces gamePlaces(const std::string& engines);

}  // namespace kelvaron
