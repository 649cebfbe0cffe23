// A folder that goes with the object, and all that is in it.
#pragma once

#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

#include "base/non_copyable.h"

namespace kelvaron::testing {

class TemporaryFolder : NonCopyable {
 public:
  TemporaryFolder() {
    static int number = 0;
    const auto now = std::chrono::system_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("kelvaron-" + std::to_string(now) + '-' + std::to_string(++number));
    if (!std::filesystem::create_directory(path_)) throw std::runtime_error("no temporary folder");
  }
  ~TemporaryFolder() {
    std::error_code ignored;  // the system's own folder is cleared in time
    std::filesystem::remove_all(path_, ignored);
  }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace kelvaron::testing
