// What the server remembers of where clients come from: whoever reconnects goes on where he
// stopped.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "server/clock.h"
#include "server/settings.h"

namespace kelvaron::server {

/// How much may be had at once, and how much a second from then on.
struct Rate {
  double burst;
  double perSecond;
};

/// An allowance that fills with time. It may be overdrawn by one price, so that what is dearer than
/// the whole burst can still be had.
class Allowance {
 public:
  /// How long to wait until something can be had; zero when that is now.
  Clock::duration waitFor(const Rate& rate, Clock::time_point now);
  void take(double price) { left_ -= price; }
  /// Whether it is as full as at the beginning.
  bool isFull(const Rate& rate, Clock::time_point now);

 private:
  void fill(const Rate& rate, Clock::time_point now);

  bool begun_ = false;
  double left_ = 0;
  Clock::time_point filledAt_{};
};

/// One address, or one network of 64 bits in IPv6, as that is what one household has.
struct Source {
  bool local = false;  // this machine's own
  long connections = 0;
  Allowance lines;
  Allowance logins;
  Clock::time_point refusalLogged{};
  long refusalsNotLogged = 0;
  Clock::time_point heldBackLoggedUntil{};
};

class Sources {
 public:
  explicit Sources(const Settings& settings) : settings_(settings) {}

  /// The source of an address in its numeric form, made when it isn't known.
  std::shared_ptr<Source> of(std::string_view address);
  Rate lineRate(const Source& source) const;
  Rate loginRate(const Source& source) const;
  /// What was left out of the log of addresses that are forgotten.
  struct Untold {
    long addresses = 0;
    long refusals = 0;
  };
  /// Forgets those that are as if they had never been here.
  Untold sweep(Clock::time_point now);

 private:
  const Settings& settings_;
  std::unordered_map<std::string, std::shared_ptr<Source>> sources_;
};

}  // namespace kelvaron::server
