#include "server/questions.h"

#include <algorithm>

namespace kelvaron::server {
namespace {

constexpr std::chrono::seconds kOpen(60);
constexpr std::size_t kMostOpen = 64;

}  // namespace

void OpenQuestions::ask(Question what, std::uint64_t whom, Clock::time_point now) {
  if (open_.size() == kMostOpen) open_.pop_front();
  open_.push_back({what, whom, now + kOpen});
}

bool OpenQuestions::takeAnswer(Question what, std::uint64_t whom, Clock::time_point now) {
  const auto asked = std::ranges::find_if(open_, [&](const Open& each) {
    return each.what == what && each.whom == whom && now < each.ends;
  });
  if (asked == open_.end()) return false;
  open_.erase(asked);
  return true;
}

}  // namespace kelvaron::server
