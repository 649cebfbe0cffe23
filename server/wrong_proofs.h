// The wrong proofs of the last ten minutes: who has guessed, and whom.
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <string>
#include <utility>

#include "server/clock.h"

namespace kelvaron::server {

class WrongProofs {
 public:
  /// `account` is the folded nickname of a registered moderator, or empty for nobody's.
  void add(std::string source, std::string account, Clock::time_point now);
  /// Forgets each one ten minutes after it came.
  void forget(Clock::time_point now);

  long from(const std::string& source) const { return countIn(bySource_, source); }
  long of(const std::string& account) const { return countIn(byAccount_, account); }
  bool has(const std::string& source, const std::string& account) const {
    return pairs_.contains({source, account});
  }

 private:
  struct Wrong {
    Clock::time_point at;
    std::string source;
    std::string account;
  };
  template <class Key>
  using Counts = std::map<Key, long>;

  template <class Key>
  static long countIn(const Counts<Key>& counts, const Key& key) {
    const auto found = counts.find(key);
    return found == counts.end() ? 0 : found->second;
  }

  std::deque<Wrong> wrong_;  // the oldest first
  Counts<std::string> bySource_;
  Counts<std::string> byAccount_;
  Counts<std::pair<std::string, std::string>> pairs_;
};

}  // namespace kelvaron::server
