// What native ports need of whoever turns the event loop: readiness of descriptors and timers.
// The desktop gives it with its toolkit, the tests with poll(2).
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "base/non_copyable.h"

namespace kelvaron {

/// A subscription; destroying it ends it: no call begins any more. It may be destroyed from within
/// its own call; the function then stays in memory until that call returns.
class LoopWatch : NonCopyable {
 public:
  virtual ~LoopWatch() = default;
};

class EventLoop : NonCopyable {
 public:
  enum class Readiness { readable, writable };

  EventLoop() = default;
  virtual ~EventLoop() = default;

  /// Calls `ready` once a turn for as long as the descriptor is ready (level-triggered). A hang-up
  /// or an error of the descriptor counts as ready both ways. The watch is destroyed before the
  /// descriptor is closed.
  virtual std::unique_ptr<LoopWatch> watch(int descriptor, Readiness readiness,
                                           std::function<void()> ready) = 0;
  /// Calls `due` once, no sooner than after `delay`; never from within this call.
  virtual std::unique_ptr<LoopWatch> after(std::chrono::milliseconds delay,
                                           std::function<void()> due) = 0;
};

}  // namespace kelvaron
