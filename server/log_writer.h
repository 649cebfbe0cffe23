// Where the log goes: a descriptor that may be full, slow or gone, which must not hold up the room.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron::server {

class LogWriter : NonCopyable {
 public:
  /// `descriptor` stays the caller's.
  explicit LogWriter(int descriptor) : descriptor_(descriptor) {}

  /// The log goes to a file, which is made when it isn't there. Throws `StoreError`.
  explicit LogWriter(std::filesystem::path file);
  ~LogWriter();
  /// Opens the file again, as it may have been moved; where that fails the log stays where it is.
  void reopen();

  /// Writes one line with the time in front. A line that finds no room (a reader who stopped, a
  /// full disk) is lost, and how many were is told when there is room again.
  void write(std::string_view text);

 private:
  bool give(const std::string& line);

  int descriptor_;
  std::filesystem::path file_{};  // empty: the descriptor is somebody else's
  std::size_t lost_ = 0;
  bool broken_ = false;  // the last line is there in part
};

}  // namespace kelvaron::server
