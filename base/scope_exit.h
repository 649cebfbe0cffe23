// A last step that a block takes however it is left.
#pragma once

#include <utility>

#include "base/non_copyable.h"

namespace kelvaron {

template <class Step>
class [[nodiscard]] ScopeExit : NonCopyable {
 public:
  explicit ScopeExit(Step step) : step_(std::move(step)) {}
  ~ScopeExit() { step_(); }

 private:
  Step step_;
};

}  // namespace kelvaron
