#include "native/disk_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace kelvaron {
namespace {

constexpr mode_t kReadAndWrite = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;

}  // namespace

void closeFile(int number) { ::close(number); }

FileDescriptor openToRead(const std::filesystem::path& path) {
  return FileDescriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
}

FileDescriptor createNew(const std::filesystem::path& path) {
  return FileDescriptor(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadAndWrite));
}

FileBeside createBeside(const std::filesystem::path& target) {
  std::string name =
      (target.parent_path() / ("." + target.filename().string() + ".XXXXXX")).string();
  FileDescriptor file(::mkostemp(name.data(), O_CLOEXEC));
  return {std::move(file), name};
}

int giveRightsOf(int file, const std::filesystem::path& target) {
  struct stat former {};
  if (::stat(target.c_str(), &former) == 0) {
    return ::fchmod(file, former.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO));
  }
  // Only asking the system by setting tells them.
  const mode_t masked = ::umask(0);
  ::umask(masked);
  return ::fchmod(file, kReadAndWrite & ~masked);
}

FileDescriptor createNameless() {
  std::error_code failed;
  std::string name = (std::filesystem::temp_directory_path(failed) / "kelvaron-XXXXXX").string();
  const FileDescriptor made(failed ? -1 : ::mkostemp(name.data(), O_CLOEXEC));
  if (made) ::unlink(name.c_str());
  return FileDescriptor(::fcntl(made.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

std::int64_t lengthOf(int file) {
  struct stat status {};
  return ::fstat(file, &status) == 0 ? status.st_size : -1;
}

std::ptrdiff_t readFully(int file, std::span<char> bytes) {
  std::size_t got = 0;
  while (got < bytes.size()) {
    const ssize_t count = ::read(file, bytes.data() + got, bytes.size() - got);
    if (count == 0) break;
    if (count < 0 && errno != EINTR) return -1;
    if (count > 0) got += static_cast<std::size_t>(count);
  }
  return static_cast<std::ptrdiff_t>(got);
}

std::ptrdiff_t readEnd(int file, std::span<char> bytes) {
  struct stat status {};
  if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) return -1;
  const auto count = std::min(status.st_size, static_cast<off_t>(bytes.size()));
  return ::pread(file, bytes.data(), static_cast<std::size_t>(count), status.st_size - count);
}

int writeAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(file, bytes.data(), bytes.size());
    if (count < 0 && errno != EINTR) return -1;
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

int writeToDisk(int file) { return ::fsync(file); }

bool meansDiskFull(int errnoValue) { return errnoValue == ENOSPC || errnoValue == EDQUOT; }

bool canWriteTo(const std::filesystem::path& folder) {
  return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

bool makePrivateFolder(const std::filesystem::path& folder) {
  std::error_code ignored;  // the folder itself tells
  std::filesystem::create_directories(folder.parent_path(), ignored);
  return ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST;
}

}  // namespace kelvaron
