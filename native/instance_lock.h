// One running instance per session: a lock that the kernel takes back even after a crash.
#pragma once

#include <filesystem>
#include <string>

#include "native/disk_file.h"

namespace kelvaron {

/// Tries once to take the lock and holds it until destroyed. The lock is a flock(2) on a file that
/// stays in the folder; programs that this one starts do not inherit it.
class InstanceLock {
 public:
  /// `folder` is created with mode 0700 when it is missing (not its parents). It is refused when
  /// it is a link, belongs to another user, or others may write to it.
  explicit InstanceLock(const std::filesystem::path& folder);

  /// `$XDG_RUNTIME_DIR/kelvaron` where that variable names a folder, else `/tmp/kelvaron-UID`.
  static std::filesystem::path sessionFolder();

  bool held() const { return static_cast<bool>(file_); }
  /// Not held because another instance holds it; false for every other reason.
  bool takenByAnother() const { return takenByAnother_; }
  /// Why it is not held, for people, in UTF-8; empty when it is.
  const std::string& problem() const { return problem_; }

 private:
  FileDescriptor file_;
  bool takenByAnother_ = false;
  std::string problem_;
};

}  // namespace kelvaron
