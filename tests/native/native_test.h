// What the tests of this folder share.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "platform/fault.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron::testing {

namespace fs = std::filesystem;

/// The number of the fault that leaves the step, else 0.
inline int faultOf(const std::function<void()>& step) {
  try {
    step();
  } catch (const Fault& fault) {
    return fault.number();
  }
  return 0;
}

/// A folder of real files; "@" in texts stands for it.
class DiskTest : public ::testing::Test {
 protected:
  /// Makes a file, and the folders above it.
  void make(const std::string& name, const std::string& content = "x",
            fs::perms permissions = fs::perms(0600)) const {
    fs::create_directories((base / name).parent_path());
    std::ofstream(base / name, std::ios::binary) << content;
    fs::permissions(base / name, permissions);
  }
  std::string contents(const std::string& name) const {
    std::ifstream file(base / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  std::string placed(std::string text) const {
    for (std::size_t at = 0; (at = text.find('@', at)) != std::string::npos;) {
      text.replace(at, 1, base.string());
    }
    return text;
  }

  TemporaryFolder folder;
  fs::path base = fs::canonical(folder.path());
};

}  // namespace kelvaron::testing
