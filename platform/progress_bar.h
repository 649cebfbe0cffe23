// A bar that shows how much of something is done.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/control.h"
#include "platform/form.h"

namespace kelvaron {

class ProgressBar : public Control {
 public:
  ProgressBar(Container& within, std::string_view name, Place place)
      : Control(within, ControlKind::progressBar, name, place) {}

  /// What a full bar stands for. 0 is a bar that stays empty.
  Property<std::int64_t> Max{*this, 100};
  /// From 0 to `Max`; more counts as full.
  Property<std::int64_t> Value{*this, 0};
};

}  // namespace kelvaron
