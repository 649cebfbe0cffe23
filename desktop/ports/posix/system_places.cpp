#include "desktop/ports/system_places.h"

#include <QString>
#include <sstream>
#include <utility>

#include "base/code_page.h"

namespace kelvaron {
namespace {

std::string environment(const char* name) { return qEnvironmentVariable(name).toStdString(); }

}  // namespace

ProgramFolders foldersOfProgram(const std::string& program) {
  return programFolders(program, environment("XDG_DATA_HOME"), environment("HOME"));
}

GamePlaces gamePlaces(const std::string& engines) {
  GamePlaces places{.engines = fromUtf8(engines)};
  std::string programs = environment("KELVARON_GAMES");
  if (programs.empty()) programs = environment("PATH") + ":/usr/games:/usr/local/games";
  std::string data = environment("KELVARON_GAME_DATA");
  if (data.empty()) data = "/usr/share/games/doom";
  data.insert(0, environment("DOOMWADDIR") + ':');
  for (const auto& [list, folders] :
       {std::pair(programs, &places.programs), std::pair(data, &places.gameData)}) {
    std::istringstream parts(list);
    for (std::string folder; std::getline(parts, folder, ':');) {
      if (folder.starts_with('/')) folders->push_back(fromUtf8(folder));
    }
  }
  return places;
}

}  // namespace kelvaron
