#include "native/instance_lock.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include "native/paths.h"

namespace kelvaron {

std::filesystem::path InstanceLock::sessionFolder() {
  const wchar_t* local = ::_wgetenv(L"LOCALAPPDATA");
  std::error_code failed;
  if (local != nullptr && std::filesystem::is_directory(local, failed)) {
    return std::filesystem::path(local) / "kelvaron";
  }
  return std::filesystem::temp_directory_path(failed) / "kelvaron";
}

// Opened for this process alone: the system closes it whatever ends the process.
InstanceLock::InstanceLock(const std::filesystem::path& folder) {
  if (!makePrivateFolder(folder)) {
    problem_ = "The session folder " + utf8Of(folder) +
               " cannot be made: " + std::generic_category().message(errno);
    return;
  }
  int number = -1;
  const errno_t error =
      ::_wsopen_s(&number, (folder / "instance.lock").c_str(), _O_RDWR | _O_CREAT | _O_NOINHERIT,
                  _SH_DENYRW, _S_IREAD | _S_IWRITE);
  if (error == 0) {
    file_ = FileDescriptor(number);
    return;
  }
  takenByAnother_ = error == EACCES && std::filesystem::exists(folder / "instance.lock");
  problem_ = takenByAnother_ ? "Kelvaron is already running"
                             : "The lock file in " + utf8Of(folder) +
                                   " cannot be opened: " + std::generic_category().message(error);
}

}  // namespace kelvaron
