#include "chat/hints.h"

#include <utility>

namespace kelvaron {

Hints::Hints(RichTextBox& beside, Timer& clock) : beside_(beside), clock_(clock) {
  clock_.Tick = [this] { passed(); };
  beside_.HintClosed = [this] {
    if (!passing_.text.empty()) return passed();
    drop();
  };
  beside_.HintFollowed = [this] {
    const auto follow = std::exchange(follow_, nullptr);
    drop();
    if (follow) follow();
  };
}

void Hints::pass(std::string text, std::chrono::milliseconds time) {
  passing_ = {.text = std::move(text), .link = {}};
  // Off and on again begins the time anew.
  clock_.Enabled = false;
  clock_.Interval = static_cast<int>(time.count());
  clock_.Enabled = true;
  show();
}

void Hints::passed() {
  passing_ = {};
  clock_.Enabled = false;
  show();
}

void Hints::stand(Hint hint, std::function<void()> follow) {
  standing_ = std::move(hint);
  follow_ = std::move(follow);
  show();
}

void Hints::drop() { stand({}, nullptr); }

void Hints::show() { beside_.Hint_ = passing_.text.empty() ? standing_ : passing_; }

}  // namespace kelvaron
