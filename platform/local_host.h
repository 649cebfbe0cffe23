// The addresses of this machine under its own name.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/non_copyable.h"

namespace kelvaron {

struct LocalHostAnswer {
  /// Dotted decimal, the last of the host's IPv4 addresses; empty when the look-up failed.
  std::string address;
  /// Of the failure to tell the machine's name, a number as in socket.h; 0 when the name is known.
  int nameError = 0;
};

/// A look-up under way; destroying it ends it, and its answer is told no more.
class LocalHostLookUp : NonCopyable {
 public:
  virtual ~LocalHostLookUp() = default;
};

class LocalHostPort : NonCopyable {
 public:
  using Done = std::function<void(const LocalHostAnswer&)>;

  virtual ~LocalHostPort() = default;

  /// Looks the machine's name up, which may take the name service many seconds. Never blocks and
  /// never faults: `done` is called once in a later turn of the loop; it may destroy the look-up.
  virtual std::unique_ptr<LocalHostLookUp> localHostAddress(Done done) = 0;
};

}  // namespace kelvaron
