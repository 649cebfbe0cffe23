#include "desktop/ports/system_places.h"

#include <QString>

#include "native/paths.h"

namespace kelvaron {

ProgramFolders foldersOfProgram(const std::string& program) {
  return programFolders(systemPath(program), qEnvironmentVariable("LOCALAPPDATA").toStdString(),
                        "");
}

// Engines are the players' own there, and take the commands themselves.
GamePlaces gamePlaces(const std::string& /*engines*/) { return {}; }

}  // namespace kelvaron
