// The toolkit's event loop for native ports.
#pragma once

#include "platform/event_loop.h"

namespace kelvaron {

class QtEventLoop final : public EventLoop {
 public:
  std::unique_ptr<LoopWatch> watch(int descriptor, Readiness readiness,
                                   std::function<void()> ready) override;
  std::unique_ptr<LoopWatch> after(std::chrono::milliseconds delay,
                                   std::function<void()> due) override;
};

}  // namespace kelvaron
