// What the room tells its user beside the chat, whose text holds only what was said.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "platform/controls.h"

namespace kelvaron {

/// One hint shows at a time: the latest that passes, else the one that stands.
class Hints {
 public:
  /// Where hints show, and the clock by whose tick one that passes goes; both outlive this.
  Hints(RichTextBox& beside, Timer& clock);

  static constexpr std::chrono::milliseconds kPasses{30'000};

  /// Shows for that long, or until the user puts it away, another one passes or `passed` ends it.
  void pass(std::string text, std::chrono::milliseconds time = kPasses);
  void passed();
  /// Shows whenever no other one does, until it is dropped or the user puts it away or follows its
  /// link.
  void stand(Hint hint, std::function<void()> follow);
  void drop();

 private:
  void show();

  RichTextBox& beside_;
  Timer& clock_;
  Hint passing_;
  Hint standing_;
  std::function<void()> follow_;
};

}  // namespace kelvaron
