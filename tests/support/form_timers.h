// Drives the timers of a client's forms from a loop, as a desktop does.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "platform/controls.h"
#include "platform/edge.h"
#include "platform/event_loop.h"
#include "platform/form_slots.h"

namespace kelvaron::testing {

/// From its making on, for forms that are made later.
class FormTimers {
 public:
  FormTimers(EventLoop& loop, Edge& edge, FormSlots& slots);

 private:
  struct Running {
    Timer* timer;
    std::unique_ptr<LoopWatch> next;
  };
  void refresh(Running& running);

  EventLoop& loop_;
  Edge& edge_;
  std::map<const Form*, std::vector<std::unique_ptr<Running>>> running_;
};

}  // namespace kelvaron::testing
