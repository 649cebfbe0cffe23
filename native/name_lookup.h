// Looks a host name up on a thread of its own and tells the outcome on the loop's thread.
#pragma once

#include <functional>
#include <future>
#include <memory>
#include <string>

#include "base/liveness.h"
#include "native/endpoint.h"
#include "native/wake_up.h"
#include "platform/event_loop.h"

namespace kelvaron {

/// Finds the addresses of a host; called on any thread.
using LookUp = std::function<Resolution(const std::string& host, std::uint16_t port)>;

/// One look-up. Destroying it abandons the thread, which ends by itself and touches nothing that
/// the destroyer owns.
class NameLookUp {
 public:
  using Done = std::function<void(Resolution)>;

  /// `done` is called once, never from within the constructor; it may destroy this object.
  /// Throws std::system_error when the system has no thread or descriptor left.
  NameLookUp(EventLoop& loop, LookUp lookUp, const std::string& host, std::uint16_t port,
             Done done);

 private:
  void finished();

  std::shared_ptr<WakeUp> wakeUp_;
  std::future<Resolution> outcome_;
  Done done_;
  Liveness liveness_;
  std::unique_ptr<LoopWatch> watch_;
};

}  // namespace kelvaron
