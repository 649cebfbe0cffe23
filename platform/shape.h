// What is drawn on a form: a round lamp, a straight line.
#pragma once

#include <string_view>

#include "platform/control.h"
#include "platform/form.h"

namespace kelvaron {

/// A round lamp.
class Shape : public Control {
 public:
  /// The fill of a lamp that isn't lit.
  static constexpr Color kUnlit{98, 104, 118};

  Shape(Container& within, std::string_view name, Place place)
      : Control(within, ControlKind::shape, name, place) {}

  Property<Color> FillColor{*this, kUnlit};

  bool lit() const { return FillColor.get() != kUnlit; }
};

/// A straight line. Has two ends in twips, relative to the container, in place of a corner and a
/// size.
class Line : public Control {
 public:
  struct Ends {
    int x1 = 0;
    int y1 = 0;
    int x2 = 0;
    int y2 = 0;
  };
  Line(Container& within, std::string_view name, Ends ends)
      : Control(within, ControlKind::line, name, {}),
        X1(*this, ends.x1),
        Y1(*this, ends.y1),
        X2(*this, ends.x2),
        Y2(*this, ends.y2) {}

  Property<int> X1;
  Property<int> Y1;
  Property<int> X2;
  Property<int> Y2;
};

}  // namespace kelvaron
