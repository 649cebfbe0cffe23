#include "desktop/chat_view/chat_notes.h"

#include <algorithm>

namespace kelvaron {
namespace {

constexpr std::time_t kMinute = 60;

}  // namespace

void ChatNotes::changed(const StyledText::Change& change) {
  if (change.cleared) {
    seen_ = 0;
    marked_.clear();
    arrivals_.clear();
    readTo_.reset();
    return;
  }
  // Appended lines move nothing; an insertion above moves what stands below it.
  const std::size_t more = change.inserted - change.removed;
  if (more == 0 || change.first >= seen_) return;
  const auto move = [&](std::size_t& line) {
    if (line > change.first) line += more;
  };
  std::ranges::for_each(marked_, move);
  for (Arrival& each : arrivals_) move(each.line);
  if (readTo_) move(*readTo_);
  seen_ += more;
}

bool ChatNotes::settle(std::time_t now) {
  const std::size_t whole = wholeLines();
  if (seen_ >= whole) return false;
  const std::time_t minute = now - now % kMinute;
  if (arrivals_.empty() || arrivals_.back().minute != minute) arrivals_.push_back({seen_, minute});
  bool found = false;
  if (!isForUser) seen_ = whole;
  for (; seen_ < whole; ++seen_) {
    if (!isForUser(text_.line(seen_))) continue;
    marked_.push_back(seen_);
    found = true;
  }
  return found;
}

bool ChatNotes::isMarked(std::size_t line) const {
  return std::ranges::binary_search(marked_, line);
}

std::optional<std::time_t> ChatNotes::cameAt(std::size_t line) const {
  if (line >= seen_) return std::nullopt;
  const auto behind = std::ranges::upper_bound(arrivals_, line, {}, &Arrival::line);
  if (behind == arrivals_.begin()) return std::nullopt;
  return std::prev(behind)->minute;
}

}  // namespace kelvaron
