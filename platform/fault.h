// A run-time fault, and the rule by which a handler meets it.
#pragma once

#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace kelvaron {

/// Fault numbers that the code names. Socket faults carry the numbers told in socket.h.
namespace fault_number {
inline constexpr int kInvalidCall = 5;
inline constexpr int kOverflow = 6;
inline constexpr int kSubscript = 9;
inline constexpr int kTypeMismatch = 13;
inline constexpr int kFileNotFound = 53;
inline constexpr int kDiskFull = 61;
inline constexpr int kInputPastEnd = 62;
inline constexpr int kPathAccess = 75;
inline constexpr int kNotConnected = 40006;
inline constexpr int kWrongSocketState = 40020;
}  // namespace fault_number

/// A step that cannot be done: a field that a line lacks, a file that is not there, a send without
/// a connection. It ends at the handler's `FaultRule`, else at the edge of the event.
class Fault : public std::runtime_error {
 public:
  Fault(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
  int number() const { return number_; }

 private:
  int number_;
};

/// How a handler meets faults, said once at its top. Its steps run through the rule:
///
///     FaultRule rule = FaultRule::goOn();
///     rule.handle([&] {
///       rule.step([&] { ... });
///       rule.step([&] { ... });
///     });
///
/// `none`: a fault leaves the handler. `stop`: the first fault ends the handler. `goOn`: a failing
/// step is passed over and the next one runs.
class FaultRule {
 public:
  static FaultRule none() { return FaultRule(Kind::none, std::nullopt); }
  static FaultRule stop() { return FaultRule(Kind::stop, std::nullopt); }
  /// Stops, but passes over a step that fails with this one number.
  static FaultRule stopExcept(int passedOver) { return FaultRule(Kind::stop, passedOver); }
  static FaultRule goOn() { return FaultRule(Kind::goOn, std::nullopt); }

  /// Runs one step. Returns whether it was finished; false means that it was passed over.
  template <class Step>
  bool step(Step&& run) const {
    try {
      std::forward<Step>(run)();
      return true;
    } catch (const Fault& fault) {
      if (kind_ == Kind::goOn || passedOver_ == fault.number()) return false;
      throw;
    }
  }

  /// Runs a handler whole. Returns the fault that ended it under `stop`, for rules that say a word
  /// about it; under `none` the fault is thrown on.
  template <class Handler>
  std::optional<Fault> handle(Handler&& run) const {
    try {
      std::forward<Handler>(run)();
      return std::nullopt;
    } catch (const Fault& fault) {
      if (kind_ == Kind::none) throw;
      return fault;
    }
  }

 private:
  enum class Kind { none, stop, goOn };
  FaultRule(Kind kind, std::optional<int> passedOver) : kind_(kind), passedOver_(passedOver) {}

  Kind kind_;
  std::optional<int> passedOver_;
};

}  // namespace kelvaron
