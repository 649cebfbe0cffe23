// Paths between UTF-8, in which the core has them, and what the system wants.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvaron {

inline std::filesystem::path systemPath(std::string_view utf8) {
  return {std::u8string(utf8.begin(), utf8.end())};
}

inline std::string utf8Of(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace kelvaron
