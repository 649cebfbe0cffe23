// The machine's own addresses, from the name service.
#pragma once

#include "platform/event_loop.h"
#include "platform/local_host.h"

namespace kelvaron {

class NativeLocalHost final : public LocalHostPort {
 public:
  explicit NativeLocalHost(EventLoop& loop) : loop_(loop) {}
  std::unique_ptr<LocalHostLookUp> localHostAddress(Done done) override;

 private:
  EventLoop& loop_;
};

}  // namespace kelvaron
