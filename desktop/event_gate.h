// The way of the toolkit's events into the system.
#pragma once

#include <functional>
#include <utility>

#include "base/non_copyable.h"
#include "platform/edge.h"

namespace kelvaron {

/// Runs handlers at the edge and knows how many of them are under way. A window whose form was
/// unloaded may be destroyed only when none is: its widgets may be on the stack.
class EventGate : NonCopyable {
 public:
  explicit EventGate(Edge& edge) : edge_(edge) {}
  ~EventGate() = default;

  /// Keeps the gate busy while an event loop turns within a handler.
  class Hold : NonCopyable {
   public:
    explicit Hold(EventGate& gate) : gate_(gate) { ++gate_.depth_; }
    ~Hold() {
      if (--gate_.depth_ == 0 && gate_.onQuiet) gate_.onQuiet();
    }

   private:
    EventGate& gate_;
  };

  /// Runs what a user's action calls for.
  template <class Handler>
  void run(Handler&& handler) {
    const Hold hold(*this);
    edge_.run(std::forward<Handler>(handler));
  }

  /// Runs what no user asked for, such as a timer's event.
  template <class Handler>
  void runUnattended(Handler&& handler) {
    const Hold hold(*this);
    edge_.runUnasked(std::forward<Handler>(handler));
  }

  bool quiet() const { return depth_ == 0; }
  bool userActs() const { return edge_.userActs(); }
  Edge& edge() const { return edge_; }

  /// The last handler has returned. Must not throw.
  std::function<void()> onQuiet;

 private:
  Edge& edge_;
  int depth_ = 0;
};

}  // namespace kelvaron
