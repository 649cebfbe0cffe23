// A round lamp.
#pragma once

#include <string_view>

#include "platform/control.h"
#include "platform/form.h"

namespace kelvaron {

class Shape : public Control {
 public:
  /// The fill of a lamp that isn't lit.
  static constexpr Color kUnlit{98, 104, 118};

  Shape(Container& within, std::string_view name, Place place)
      : Control(within, ControlKind::shape, name, place) {}

  Property<Color> FillColor{*this, kUnlit};

  bool lit() const { return FillColor.get() != kUnlit; }
};

}  // namespace kelvaron
