// What a server has done, for the person who runs it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "server/clock.h"
#include "server/status.h"

namespace kelvaron::server {

class Statistics {
 public:
  /// From clients.
  void countLine() { ++now_.lines; }
  /// To clients.
  void countBytes(std::size_t bytes) { now_.bytes += bytes; }
  void countLists(std::size_t lists) { now_.lists += lists; }
  void countRefusal() { ++now_.refusals; }

  /// One line about the time since the last call, with this program's memory now. None when
  /// `onlyTraffic` and nothing has come or gone; the time goes on then.
  std::optional<std::string> next(std::size_t clients, bool onlyTraffic);

  /// Notes the counts of now, so that `status` can tell what a second of the last minute had.
  /// Called every so often.
  void sample(Clock::time_point now);
  /// All but clients and problems.
  Status status(Clock::time_point now) const;

 private:
  struct Counts {
    std::uint64_t lines = 0;
    std::uint64_t bytes = 0;
    std::uint64_t lists = 0;
    std::uint64_t refusals = 0;
    bool operator==(const Counts&) const = default;
  };

  Counts now_;
  Counts told_;
  Clock::time_point toldAt_ = Clock::now();
  struct Sample {
    Clock::time_point at;
    Counts counts;
  };
  std::deque<Sample> samples_{{Clock::now(), {}}};  // of the last minute, the oldest first
  std::chrono::sys_seconds since_ =
      std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
};

}  // namespace kelvaron::server
