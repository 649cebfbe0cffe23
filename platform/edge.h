// The edge between a shell and the system: every event of a control, socket or timer enters here.
#pragma once

#include <exception>
#include <functional>
#include <utility>

#include "platform/fault.h"

namespace kelvaron {

/// Thrown by `Application::End`: unwinds to the edge, past every fault rule. No handler catches it.
struct ProgramEnd {};

class Edge {
 public:
  /// Runs a handler. Nothing escapes: a fault that no rule met goes to `onFault`, the end of the
  /// program to `onEnd`. After the end nothing runs any more. Handlers nest when one of them turns
  /// the event loop (a box, `DoEvents`).
  template <class Handler>
  void run(Handler&& handler) {
    enter(std::forward<Handler>(handler), true);
  }
  /// The same for what no press or key of the user has called: sockets, timers, other programs.
  template <class Handler>
  void runUnasked(Handler&& handler) {
    enter(std::forward<Handler>(handler), false);
  }

  /// Whether what runs now, the innermost of what runs, was called by the user.
  bool userActs() const { return userActs_; }
  bool ended() const { return ended_; }

  /// Called by ports when a nested event loop returns: throws `ProgramEnd` if the program ended
  /// meanwhile, so that the handler that waits goes no further.
  void throwIfEnded() const {
    if (ended_) throw ProgramEnd{};
  }

  std::function<void(const Fault&)> onFault;
  std::function<void()> onEnd;
  /// No handler is running: what waited for that can be done (forms that were unloaded go).
  std::function<void()> onIdle;

 private:
  template <class Handler>
  void enter(Handler&& handler, bool byUser) {
    if (ended_) return;
    ++depth_;
    const bool outer = std::exchange(userActs_, byUser);
    try {
      std::forward<Handler>(handler)();
    } catch (const ProgramEnd&) {
      end();
    } catch (const Fault& fault) {
      report(fault);
    } catch (const std::exception& unforeseen) {
      report(Fault(fault_number::kInvalidCall, unforeseen.what()));
    }
    userActs_ = outer;
    --depth_;
    if (depth_ == 0 && onIdle) onIdle();
  }
  void end() {
    if (std::exchange(ended_, true)) return;
    if (onEnd) onEnd();
  }
  // Whatever the user did, he did not ask for a fault.
  void report(const Fault& fault) {
    userActs_ = false;
    try {
      if (onFault) onFault(fault);
    } catch (const ProgramEnd&) {
      end();
    }
  }

  int depth_ = 0;
  bool userActs_ = false;
  bool ended_ = false;
};

}  // namespace kelvaron
