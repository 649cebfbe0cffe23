// The words of Doomsday, whose server stays and whose players come and go.
#pragma once

#include <filesystem>

#include "engines/switches.h"

namespace kelvaron::engines {

/// Where the server listens, TCP.
inline constexpr const char* kDoomsdayPort = "13209";

/// A folder for one running program: its settings, and links under the names that it looks for.
/// Taken until this ends; what a program keeps there is found again by the next.
class OwnFolder {
 public:
  /// The first of "NAME-1", "NAME-2" ... that nobody has. Throws Refusal where none can be had.
  explicit OwnFolder(const std::string& name, int most = 16);
  OwnFolder(const OwnFolder&) = delete;
  OwnFolder& operator=(const OwnFolder&) = delete;
  ~OwnFolder();

  const std::filesystem::path& path() const { return path_; }

  /// The process that has the folder NAME-1; 0 where none has.
  static int owner(const std::string& name);

 private:
  std::filesystem::path path_;
  int lock_ = -1;
};

/// Of the server. What the command doesn't name is Doom II's own file, wherever it is found, and
/// level 1; a server that stays plays deathmatch unless told.
Words doomsdayServerWords(const GameCommand& command, const OwnFolder& folder, bool stays);

/// Has what this program starts from here on load preloaded/doomsday_start.cpp, which keeps the
/// game's start from waiting for ever. Does nothing where that doesn't lie beside this program.
void preloadStart();

/// Of a player's game at this address.
Words doomsdayGameWords(const GameCommand& command, const OwnFolder& folder,
                        const std::string& address);

}  // namespace kelvaron::engines
