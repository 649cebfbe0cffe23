#include "desktop/shell/timer_view.h"

#include <utility>

namespace kelvaron {

TimerView::TimerView(Timer& timer, EventGate& gate) : timer_(&timer) {
  timer.onRefresh = [this] { refresh(); };
  QObject::connect(&clock_, &QTimer::timeout, &clock_,
                   [&timer, &gate] { gate.runUnattended([&timer] { timer.Tick(); }); });
  refresh();
}

void TimerView::detach() {
  clock_.stop();
  if (Timer* timer = std::exchange(timer_, nullptr)) timer->onRefresh = nullptr;
}

void TimerView::refresh() {
  const bool runs = timer_->Enabled && timer_->Interval > 0;
  if (!runs) {
    clock_.stop();
  } else if (!clock_.isActive() || clock_.interval() != timer_->Interval) {
    clock_.start(timer_->Interval);
  }
}

}  // namespace kelvaron
