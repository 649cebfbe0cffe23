// Observable properties and events: how controls are read, written and heard.
#pragma once

#include <functional>
#include <utility>

#include "base/non_copyable.h"

namespace kelvaron {

/// Something with properties that a shell shows.
class Observable : NonCopyable {
 public:
  virtual ~Observable() = default;

  /// The one observer (the shell's widget), told after a property took another value. It reads
  /// what it shows; it must not write here.
  std::function<void()> onRefresh;

 protected:
  template <class T>
  friend class Property;
  /// Told which property took another value. Overriders raise their own events here.
  virtual void propertyChanged(const void* /*property*/) { refresh(); }
  void refresh() const {
    if (onRefresh) onRefresh();
  }
};

/// A value of a control. Reading is conversion, writing is assignment; the owner is told when the
/// value differs.
template <class T>
class Property : NonCopyable {
 public:
  Property(Observable& owner, T value) : owner_(&owner), value_(std::move(value)) {}
  ~Property() = default;

  const T& get() const { return value_; }
  // Reading a property is reading its value.
  operator const T&() const { return value_; }  // NOLINT(google-explicit-constructor)

  Property& operator=(T value) {
    if (value == value_) return *this;
    value_ = std::move(value);
    owner_->propertyChanged(this);
    return *this;
  }

  /// Changes the value in its place, for one that is too long to be made anew each time.
  template <class Change>
  void change(Change&& how) {
    how(value_);
    owner_->propertyChanged(this);
  }

  /// For the shell: takes what the user did on the widget, without telling the widget again.
  void setQuietly(T value) { value_ = std::move(value); }

 private:
  Observable* owner_;
  T value_;
};

/// An event of a control: at most one handler, which the form wires in its constructor.
template <class... Args>
class Event {
 public:
  template <class Handler>
  Event& operator=(Handler handler) {
    handler_ = std::move(handler);
    return *this;
  }
  explicit operator bool() const { return static_cast<bool>(handler_); }
  void operator()(Args... args) const {
    if (handler_) handler_(args...);
  }

 private:
  std::function<void(Args...)> handler_;
};

}  // namespace kelvaron
