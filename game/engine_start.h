// Starting an engine: one press, one game.
#pragma once

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
  struct Done {
    bool& underWay;
    ~Done() { underWay = false; }
  } const done{underWay};
  start();
}

}  // namespace kelvaron
