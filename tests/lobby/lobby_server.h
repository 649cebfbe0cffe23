// The companion server for the lobby's tests. It runs on this system alone: in the test's own
// process, or, where the tests are Windows' own, beside them.
#pragma once

#include <cstdint>
#include <memory>

#include "base/non_copyable.h"

namespace kelvaron::testing {

/// A server on a folder of its own, in which "ann" is registered as a moderator with the e-mail
/// address "ann@example.org" and the password "secret". It ends with this.
class LobbyServer : NonCopyable {
 public:
  LobbyServer();
  ~LobbyServer();

  std::uint16_t port() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace kelvaron::testing
