// Keeps calls from the event loop away from an owner that is gone or has begun anew.
#pragma once

#include <memory>
#include <utility>

namespace kelvaron {

/// What `guard` wraps is called only until the `Liveness` is renewed or destroyed.
class Liveness {
 public:
  template <class Call>
  auto guard(Call call) const {
    return [token = std::weak_ptr<const int>(token_), call = std::move(call)](auto&&... arguments) {
      if (!token.expired()) call(std::forward<decltype(arguments)>(arguments)...);
    };
  }

  void renew() { token_ = std::make_shared<const int>(0); }

 private:
  std::shared_ptr<const int> token_ = std::make_shared<const int>(0);
};

}  // namespace kelvaron
