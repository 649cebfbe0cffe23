#include "native/program_folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "build_settings.h"

namespace kelvaron {
namespace {

namespace fs = std::filesystem;

bool canWrite(const fs::path& folder) { return ::access(folder.c_str(), W_OK | X_OK) == 0; }

/// Makes the folder, and those above it, for the user alone. Whether it is there.
bool make(const fs::path& folder) {
  std::error_code ignored;  // the folder itself tells
  fs::create_directories(folder.parent_path(), ignored);
  return ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
}

}  // namespace

ProgramFolders programFolders(const fs::path& program, const std::string& dataHome,
                              const std::string& home) {
  const fs::path installed = program / build::kDataFromPrograms;
  ProgramFolders folders{program, program, program / "engines", {}};
  std::error_code ignored;  // then it is no such folder
  if (fs::is_directory(installed, ignored)) {
    folders.installed = installed.lexically_normal();
    folders.engines = (program / build::kEnginesFromPrograms).lexically_normal();
  } else if (canWrite(program)) {
    return folders;
  }
  fs::path data = dataHome;
  if (!data.is_absolute() && !home.empty()) data = fs::path(home) / ".local/share";
  if (!data.is_absolute()) {
    folders.problem = "Kelvaron can not keep settings and files: this user has no home folder.";
    return folders;
  }
  folders.own = data / "kelvaron";
  if (!make(folders.own) || !canWrite(folders.own)) {
    folders.problem = "Kelvaron can not keep settings and files: the folder " +
                      folders.own.string() + " can not be written to (" +
                      std::generic_category().message(errno) + ").";
  }
  return folders;
}

}  // namespace kelvaron
