// The memory of this process.
#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace kelvaron {

/// Bytes of this process that are in memory, to the KiB; 0 where the system doesn't tell.
inline std::size_t residentBytes() {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word) {
    std::size_t kibibytes = 0;
    if (word == "VmRSS:" && status >> kibibytes) return kibibytes * 1024;
  }
  return 0;
}

}  // namespace kelvaron
