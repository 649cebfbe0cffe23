// Bytes received and not read yet, with the rule that holds an unfinished line back.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace kelvaron {

class ArrivalBuffer {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// A tail longer than this (in bytes) counts as arrived: no line is meant to be so long.
  static constexpr std::size_t kLongestTail = std::size_t{1} << 20U;

  /// Whether bytes behind the last line feed wait. What waits already goes on doing so.
  void setHoldBack(bool holdBack) { holdBack_ = holdBack; }

  void append(std::string_view bytes, Time now);
  /// Lets the tail count as arrived.
  void releaseTail() { arrived_ = bytes_.size(); }
  /// Counts the tail as begun only now.
  void renewTail(Time now) { tailSince_ = now; }
  /// Takes all that has arrived; the tail stays.
  std::string take();
  void clear();

  /// Bytes that `take` would give.
  std::size_t arrived() const { return arrived_; }
  /// Those and the tail.
  std::size_t size() const { return bytes_.size(); }
  bool hasTail() const { return arrived_ < bytes_.size(); }
  /// When the first byte of the tail came.
  Time tailSince() const { return tailSince_; }

 private:
  std::string bytes_;
  std::size_t arrived_ = 0;
  Time tailSince_{};
  bool holdBack_ = false;
};

}  // namespace kelvaron
