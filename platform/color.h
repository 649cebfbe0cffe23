// A colour as red, green and blue, as the chat protocol and the forms tell it.
#pragma once

#include <cstdint>

namespace kelvaron {

struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  bool operator==(const Color&) const = default;

  /// From the number that travels in `STATUSTEXT`: red in the low byte, then green, then blue.
  /// Bits above the 24th are dropped.
  static constexpr Color fromNumber(std::uint32_t number) {
    return {static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(number >> 8U),
            static_cast<std::uint8_t>(number >> 16U)};
  }
};

}  // namespace kelvaron
