// Where the log goes: a descriptor that may be full, slow or gone, which must not hold up the room.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron::server {

class LogWriter {
 public:
  /// `descriptor` stays the caller's.
  explicit LogWriter(int descriptor) : descriptor_(descriptor) {}

  /// Writes one line with the time in front. A line that finds no room (a reader who stopped, a
  /// full disk) is lost, and how many were is told when there is room again.
  void write(std::string_view text);

 private:
  bool give(const std::string& line);

  int descriptor_;
  std::size_t lost_ = 0;
  bool broken_ = false;  // the last line is there in part
};

}  // namespace kelvaron::server
