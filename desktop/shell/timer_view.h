// A form's timer at work. It has no widget and runs whether its form is on the screen or not.
#pragma once

#include <QTimer>

#include "base/non_copyable.h"
#include "desktop/event_gate.h"
#include "platform/controls.h"

namespace kelvaron {

class TimerView : NonCopyable {
 public:
  TimerView(Timer& timer, EventGate& gate);
  ~TimerView() { detach(); }

  /// Stops, and lets go of the timer, which is about to be destroyed.
  void detach();

 private:
  void refresh();

  Timer* timer_;
  QTimer clock_;
};

}  // namespace kelvaron
