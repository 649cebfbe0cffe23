// The questions of one user that others may answer with an address.
#pragma once

#include <cstdint>
#include <deque>

#include "server/clock.h"

namespace kelvaron::server {

enum class Question { none, join, file };

class OpenQuestions {
 public:
  /// `whom` is a connection's number. The oldest of 64 is forgotten for a new one.
  void ask(Question what, std::uint64_t whom, Clock::time_point now);
  /// Whether this was asked of him within the last minute. Each question has one answer.
  bool takeAnswer(Question what, std::uint64_t whom, Clock::time_point now);

 private:
  struct Open {
    Question what;
    std::uint64_t whom;
    Clock::time_point ends;
  };

  std::deque<Open> open_;  // in the order of asking
};

}  // namespace kelvaron::server
