// A number chosen by moving a knob between two ends; the lowest is on the left.
#pragma once

#include <string_view>

#include "platform/control.h"
#include "platform/form.h"

namespace kelvaron {

class Slider : public Control {
 public:
  Slider(Container& within, std::string_view name, Place place, int min, int max, int value)
      : Control(within, ControlKind::slider, name, place),
        Min(min),
        Max(max),
        Value(*this, value) {}

  const int Min;
  const int Max;
  /// The groove is filled from the knob to the right end: for what is most at the left.
  bool FillsBehind = false;
  /// Each new value, by the user or by code, raises `Change`.
  Property<int> Value;

  Event<> Change;

 protected:
  void propertyChanged(const void* property) override {
    Control::propertyChanged(property);
    if (property == &Value) Change();
  }
};

}  // namespace kelvaron
