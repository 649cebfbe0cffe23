// A descriptor that one thread makes readable for a loop on another.
#pragma once

#include "native/sockets.h"

namespace kelvaron {

class WakeUp {
 public:
  /// Throws std::system_error when the system has no descriptor left.
  WakeUp();

  /// Readable once `signal` was called, for good.
  int descriptor() const { return descriptor_.get(); }
  /// On any thread.
  void signal() const;

 private:
  SocketDescriptor descriptor_;
};

}  // namespace kelvaron
