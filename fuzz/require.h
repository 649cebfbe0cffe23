// What must hold in a fuzz target, and its input as text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace kelvaron {

/// Ends the fuzzer with a find.
inline void require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The pieces of an input between certain bytes: one more than there are of these.
inline std::vector<std::string_view> pieces(std::string_view input, char mark) {
  std::vector<std::string_view> result;
  for (std::size_t cut = 0; (cut = input.find(mark)) != std::string_view::npos;) {
    result.push_back(input.substr(0, cut));
    input.remove_prefix(cut + 1);
  }
  result.push_back(input);
  return result;
}

}  // namespace kelvaron
