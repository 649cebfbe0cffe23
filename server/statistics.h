// What a server has done, for the person who runs it.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

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
  std::chrono::steady_clock::time_point toldAt_ = std::chrono::steady_clock::now();
};

}  // namespace kelvaron::server
