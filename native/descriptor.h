// Owner of one descriptor of the system.
#pragma once

#include <utility>

namespace kelvaron {

/// `kClose` closes a descriptor of its kind.
template <void (*kClose)(int)>
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    other.reset();
    return *this;
  }
  ~Descriptor() { reset(); }

  /// -1 when it owns none.
  int get() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

  void reset() {
    if (number_ >= 0) kClose(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

}  // namespace kelvaron
