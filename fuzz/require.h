// What must hold in a fuzz target, and its input as text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace kelvaron {

/// Ends the fuzzer with a find.
inline void require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace kelvaron
