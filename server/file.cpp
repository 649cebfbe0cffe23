// Whole files by the system's calls, as only these bring a file to the disk before its rename.
#include "server/file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "base/non_copyable.h"
#include "server/store_error.h"

namespace kelvaron::server {
namespace {

[[noreturn]] void fail(const std::filesystem::path& path, const char* what) {
  throw StoreError(path.string() + ": " + what + ": " + std::generic_category().message(errno));
}

class Descriptor : NonCopyable {
 public:
  Descriptor(const std::filesystem::path& path, int flags)
      : number_(::open(path.c_str(), flags | O_CLOEXEC, 0600)) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  bool is_open() const { return number_ >= 0; }
  int number() const { return number_; }
  /// Whether the close itself told no error.
  bool close() { return ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

bool writeAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// The administrator's commands leave the files to the user whose folder it is; whether that went
/// well.
bool giveToOwner(int file, const std::filesystem::path& folder) {
  struct stat status {};
  return ::geteuid() != 0 || ::stat(folder.c_str(), &status) != 0 ||
         ::fchown(file, status.st_uid, status.st_gid) == 0;
}

}  // namespace

std::optional<std::string> readFile(const std::filesystem::path& path) {
  const Descriptor file(path, O_RDONLY);
  if (!file.is_open() && errno == ENOENT) return std::nullopt;
  if (!file.is_open()) fail(path, "can't be opened");
  std::string bytes;
  std::array<char, 16384> block{};
  while (true) {
    const ssize_t count = ::read(file.number(), block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail(path, "can't be read");
    if (count == 0) return bytes;
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
}

void replaceFile(const std::filesystem::path& path, std::string_view bytes) {
  const std::filesystem::path beside = path.string() + ".new";
  Descriptor file(beside, O_WRONLY | O_CREAT | O_TRUNC);
  if (!file.is_open()) fail(beside, "can't be written");
  if (!giveToOwner(file.number(), path.parent_path())) {
    fail(beside, "can't be given to the folder's owner");
  }
  if (!writeAll(file.number(), bytes) || ::fsync(file.number()) != 0 || !file.close() ||
      std::rename(beside.c_str(), path.c_str()) != 0) {
    const int reason = errno;
    ::unlink(beside.c_str());
    errno = reason;
    fail(path, "can't be replaced");
  }
  const Descriptor folder(path.parent_path(), O_RDONLY | O_DIRECTORY);
  if (folder.is_open() && ::fsync(folder.number()) != 0) fail(path, "can't be brought to the disk");
}

FolderLock::FolderLock(const std::filesystem::path& folder)
    : number_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (number_ < 0) fail(folder, "can't be opened");
  while (::flock(number_, LOCK_EX) != 0) {
    if (errno == EINTR) continue;
    ::close(number_);
    fail(folder, "can't be locked");
  }
}

FolderLock::~FolderLock() { ::close(number_); }

FolderClaim::FolderClaim(const std::filesystem::path& folder)
    : number_(::open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
  if (number_ < 0) fail(folder / "lock", "can't be opened");
  if (::flock(number_, LOCK_EX | LOCK_NB) == 0) {
    if (giveToOwner(number_, folder)) return;
    ::close(number_);
    fail(folder / "lock", "can't be given to the folder's owner");
  }
  const bool taken = errno == EWOULDBLOCK;
  ::close(number_);
  if (taken) throw StoreError(folder.string() + ": another server runs on this folder");
  fail(folder / "lock", "can't be locked");
}

FolderClaim::~FolderClaim() { ::close(number_); }

FileStamp fileStamp(const std::filesystem::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return {static_cast<std::int64_t>(status.st_ino),
          status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec};
}

}  // namespace kelvaron::server
