// What the user has asked another player for, so that the answer may take the keyboard.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "session/client.h"

namespace kelvaron {

struct AskedFor {
  /// How many keys had been typed when the question went out; none while there is no question.
  using Question = std::optional<std::uint64_t>;
  Question profile;
  Question ping;
  Question file;
};

inline void askedFor(Client& client, AskedFor::Question AskedFor::*what) {
  client.lasting<AskedFor>().*what = client.keysTyped();
}

/// An answer is there: brings its form up ready to use when the user asked for it and has typed
/// nothing since; else the keyboard stays where it is. A question has one answer.
inline void showAnswer(Client& client, Form& form, AskedFor::Question AskedFor::*what) {
  const auto asked = std::exchange(client.lasting<AskedFor>().*what, std::nullopt);
  if (asked && *asked == client.keysTyped()) {
    form.Show();
  } else {
    form.ShowQuietly();
  }
}

}  // namespace kelvaron
