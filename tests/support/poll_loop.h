// An event loop on poll(2), for programs without a toolkit: tests, benchmarks, fuzzers.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/event_loop.h"

namespace kelvaron {

/// For one thread. Handlers may create and destroy watches and run the loop again; an exception
/// from a handler leaves `runOnce`, after which the loop can go on. Watches may outlive the loop.
class PollLoop : public EventLoop {
 public:
  PollLoop();

  std::unique_ptr<LoopWatch> watch(int descriptor, Readiness readiness,
                                   std::function<void()> ready) override;
  std::unique_ptr<LoopWatch> after(std::chrono::milliseconds delay,
                                   std::function<void()> due) override;

  /// One turn: waits up to `maxWait` for something to be ready or due, then calls all that is.
  /// What handlers add runs from the next turn on.
  /// Throws std::logic_error when a watched descriptor is not open.
  void runOnce(std::chrono::milliseconds maxWait);
  /// Turns until `done` holds. Returns false when it did not within `limit`.
  bool runUntil(const std::function<bool()>& done, std::chrono::milliseconds limit);

 private:
  struct State;
  class Watch;

  void callReady(std::chrono::milliseconds wait);
  void callDue(std::uint64_t idLimit);

  std::shared_ptr<State> state_;
};

}  // namespace kelvaron
