// Starting an engine: one press, one game.
#pragma once

#include "base/scope_exit.h"
#include "session/client.h"

namespace kelvaron {

/// What the starts of one client share.
struct EngineStarts {
  bool underWay = false;
};

/// Runs `start`, unless another one is under way: a start lets pending events run, and a second
/// press may be among them.
template <class Start>
void startOnce(Client& client, Start&& start) {
  bool& underWay = client.lasting<EngineStarts>().underWay;
  if (underWay) return;
  underWay = true;
  const ScopeExit done([&] { underWay = false; });
  start();
}

}  // namespace kelvaron
