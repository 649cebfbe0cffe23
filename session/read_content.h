// Presses in windows whose content arriving lines change under the user's hand.
#pragma once

#include <chrono>
#include <optional>
#include <utility>

namespace kelvaron {

/// What a press is meant for in a window whose content others change: what was there long enough to
/// be read. What took its place less than half a second ago is nobody's answer yet.
template <class T>
class ReadContent {
 public:
  static constexpr std::chrono::milliseconds kTimeToRead{500};
  using Time = std::chrono::steady_clock::time_point;

  /// The window shows `content` now. The first one counts at once.
  void show(T content, Time now) {
    if (shown_) {
      if (now >= readAt_) before_ = std::move(shown_);
      readAt_ = now + kTimeToRead;
    }
    shown_ = std::move(content);
  }
  /// The button goes down: what comes before it is let go doesn't matter.
  void press(Time now) { pressed_ = meant(now); }
  /// What the press was meant for; none when nothing was there to be read.
  std::optional<T> take(Time now) {
    std::optional<T> taken = pressed_ ? std::move(pressed_) : meant(now);
    pressed_.reset();
    // A second press must not fall on what the first one was not meant for.
    if (taken && taken != shown_) {
      before_.reset();
      readAt_ = now + kTimeToRead;
    }
    return taken;
  }
  bool isShown(const T& content) const { return shown_ == content; }

 private:
  const std::optional<T>& meant(Time now) const { return now >= readAt_ ? shown_ : before_; }

  std::optional<T> shown_;
  std::optional<T> before_;
  std::optional<T> pressed_;
  Time readAt_{};
};

}  // namespace kelvaron
