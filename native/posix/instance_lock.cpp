#include "native/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace kelvaron {
namespace {

std::string because(const std::string& what) {
  return what + ": " + std::generic_category().message(errno);
}

/// Opens the folder, made when missing. On failure `problem` says why.
FileDescriptor openFolder(const std::filesystem::path& folder, std::string& problem) {
  const std::string name = "The session folder " + folder.string();
  if (::mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
    problem = because(name + " cannot be made");
    return {};
  }
  FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat status {};
  if (!opened || ::fstat(opened.get(), &status) != 0) {
    problem = because(name + " cannot be opened");
    return {};
  }
  if (status.st_uid != ::geteuid()) {
    problem = name + " belongs to another user";
    return {};
  }
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    problem = name + " may be written to by other users";
    return {};
  }
  return opened;
}

}  // namespace

std::filesystem::path InstanceLock::sessionFolder() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime != nullptr) {
    const std::filesystem::path folder(runtime);
    std::error_code ignored;  // then it is no folder
    if (folder.is_absolute() && std::filesystem::is_directory(folder, ignored)) {
      return folder / "kelvaron";
    }
  }
  return "/tmp/kelvaron-" + std::to_string(::getuid());
}

InstanceLock::InstanceLock(const std::filesystem::path& folder) {
  const FileDescriptor opened = openFolder(folder, problem_);
  if (!opened) return;
  FileDescriptor file(::openat(opened.get(), "instance.lock",
                               O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!file) {
    problem_ = because("The lock file in " + folder.string() + " cannot be opened");
    return;
  }
  if (::flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
    file_ = std::move(file);
    return;
  }
  takenByAnother_ = errno == EWOULDBLOCK;
  problem_ = takenByAnother_ ? "Kelvaron is already running"
                             : because("The lock file in " + folder.string() + " cannot be locked");
}

}  // namespace kelvaron
