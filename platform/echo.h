// Measuring the way to another machine by an ICMP echo.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron {

/// How an echo ended.
struct EchoOutcome {
  enum class Kind {
    replied,
    /// Nothing came back in time.
    noReply,
    /// The system did not let the echo out: `reason` says why and, where an administrator can
    /// change it, what.
    refused,
  };
  Kind kind = Kind::noReply;
  /// Time of the round trip in whole milliseconds, rounded down; counts when `replied`.
  std::uint32_t milliseconds = 0;
  /// Code page 1252.
  std::string reason;
};

/// An echo under way; destroying it ends it, and its outcome is told no more.
class Echo : NonCopyable {
 public:
  virtual ~Echo() = default;
};

class EchoPort : NonCopyable {
 public:
  using Done = std::function<void(const EchoOutcome&)>;

  virtual ~EchoPort() = default;

  /// Sends one echo with `data` to an IPv4 address, whose first number is in the low byte. Never
  /// blocks and never faults: `done` is called once in a later turn of the loop, at the latest when
  /// `timeOut` is over. It may destroy the echo. Address 0 is nobody's, and never replies.
  virtual std::unique_ptr<Echo> send(std::uint32_t address, std::string_view data,
                                     std::chrono::milliseconds timeOut, Done done) = 0;
};

}  // namespace kelvaron
