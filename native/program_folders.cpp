#include "native/program_folders.h"

#include <cerrno>
#include <system_error>

#include "build_settings.h"
#include "native/disk_file.h"
#include "native/paths.h"

namespace kelvaron {
namespace {

namespace fs = std::filesystem;

}  // namespace

ProgramFolders programFolders(const fs::path& program, const std::string& dataHome,
                              const std::string& home) {
  const fs::path installed = program / build::kDataFromPrograms;
  ProgramFolders folders{program, program, program / "engines", {}};
  std::error_code ignored;  // then it is no such folder
  if (fs::is_directory(installed, ignored)) {
    folders.installed = installed.lexically_normal();
    folders.engines = (program / build::kEnginesFromPrograms).lexically_normal();
  } else if (canWriteTo(program)) {
    return folders;
  }
  fs::path data = dataHome;
  if (!data.is_absolute() && !home.empty()) data = fs::path(home) / ".local/share";
  if (!data.is_absolute()) {
    folders.problem = "Kelvaron can not keep settings and files: this user has no home folder.";
    return folders;
  }
  folders.own = data / "kelvaron";
  if (!makePrivateFolder(folders.own) || !canWriteTo(folders.own)) {
    folders.problem = "Kelvaron can not keep settings and files: the folder " +
                      utf8Of(folders.own) + " can not be written to (" +
                      std::generic_category().message(errno) + ").";
  }
  return folders;
}

}  // namespace kelvaron
