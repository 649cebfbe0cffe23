#include "tests/support/form_timers.h"

namespace kelvaron::testing {

FormTimers::FormTimers(EventLoop& loop, Edge& edge, FormSlots& slots) : loop_(loop), edge_(edge) {
  slots.onLoaded = [this](Form& form) {
    for (Control* control : form.Controls()) {
      if (control->kind != ControlKind::timer) continue;
      auto& added = running_[&form].emplace_back(std::make_unique<Running>());
      added->timer = static_cast<Timer*>(control);
      control->onRefresh = [this, running = added.get()] { refresh(*running); };
      refresh(*added);
    }
  };
  slots.onUnloaded = [this](Form& form) {
    for (const auto& running : running_[&form]) running->timer->onRefresh = nullptr;
    running_.erase(&form);
  };
}

void FormTimers::refresh(Running& running) {
  if (!running.timer->Enabled || running.timer->Interval <= 0) return running.next.reset();
  if (running.next) return;
  running.next = loop_.after(std::chrono::milliseconds(running.timer->Interval), [this, &running] {
    running.next.reset();
    refresh(running);
    Timer& timer = *running.timer;
    edge_.run([&timer] { timer.Tick(); });
  });
}

}  // namespace kelvaron::testing
