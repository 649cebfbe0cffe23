// Reading a whole file, and replacing one so that a crash leaves the old or the new, never half.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron::server {

/// The bytes of a file, or nothing when there is none. Throws `StoreError` when it can't be read.
std::optional<std::string> readFile(const std::filesystem::path& path);

/// Writes beside `path`, brings the bytes to the disk and renames. The file is readable for its
/// owner alone, who is the folder's when an administrator writes. Throws `StoreError` and leaves
/// the old file when any step fails.
void replaceFile(const std::filesystem::path& path, std::string_view bytes);

/// Holds off other programs that want to change the same folder, as long as it lives; waits until
/// they have finished. Throws `StoreError` for a folder that isn't there or can't be locked.
class FolderLock : NonCopyable {
 public:
  explicit FolderLock(const std::filesystem::path& folder);
  ~FolderLock();

 private:
  int number_;
};

/// Keeps a second server from the folder as long as it lives, by a lock on the file "lock" in it.
/// Throws `StoreError` when another server has the folder.
class FolderClaim : NonCopyable {
 public:
  explicit FolderClaim(const std::filesystem::path& folder);
  ~FolderClaim();

 private:
  int number_;
};

/// A file's number on its disk and when it changed, in nanoseconds; zeros when there is none.
struct FileStamp {
  std::int64_t number = 0;
  std::int64_t changed = 0;
};
FileStamp fileStamp(const std::filesystem::path& path);

}  // namespace kelvaron::server
