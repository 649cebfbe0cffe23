// Drives the timers of a client's forms from a loop, as a desktop does.
#pragma once

#include <map>
#include <memory>

#include "platform/controls.h"
#include "platform/edge.h"
#include "platform/event_loop.h"
#include "platform/form_slots.h"

namespace kelvaron::testing {

/// From its making on, for forms that are made later.
class FormTimers {
 public:
  FormTimers(EventLoop& loop, Edge& edge, FormSlots& slots) : loop_(loop), edge_(edge) {
    slots.onLoaded = [this](Form& form) {
      for (Control* control : form.Controls()) {
        if (control->kind != ControlKind::timer) continue;
        control->onRefresh = [this, &timer = static_cast<Timer&>(*control)] { refresh(timer); };
        control->onRefresh();
      }
    };
    slots.onUnloaded = [this](Form& form) {
      for (Control* control : form.Controls()) {
        if (next_.erase(control) > 0) control->onRefresh = nullptr;
      }
    };
  }

 private:
  void refresh(Timer& timer) {
    std::unique_ptr<LoopWatch>& next = next_[&timer];
    if (!timer.Enabled || timer.Interval <= 0) return next.reset();
    if (next) return;
    next = loop_.after(std::chrono::milliseconds(timer.Interval), [this, &timer] {
      next_[&timer].reset();
      refresh(timer);
      edge_.runUnasked([&timer] { timer.Tick(); });
    });
  }

  EventLoop& loop_;
  Edge& edge_;
  std::map<const Control*, std::unique_ptr<LoopWatch>> next_;
};

}  // namespace kelvaron::testing
