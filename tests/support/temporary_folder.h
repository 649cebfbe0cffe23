// A folder that goes with the object, and all that is in it.
#pragma once

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "base/non_copyable.h"

namespace kelvaron::testing {

class TemporaryFolder : NonCopyable {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kelvaron-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace kelvaron::testing
