#include "desktop/controls/line_history.h"

namespace kelvaron {

void LineHistory::add(const QString& sent) {
  if (sent_.isEmpty() || sent_.last() != sent) sent_.append(sent);
  if (sent_.size() > kMost) sent_.removeFirst();
  at_ = sent_.size();
  begun_.clear();
}

std::optional<QString> LineHistory::older(const QString& shown) {
  if (at_ == 0) return std::nullopt;
  if (at_ == sent_.size()) begun_ = shown;
  return sent_[--at_];
}

std::optional<QString> LineHistory::newer() {
  if (at_ == sent_.size()) return std::nullopt;
  return ++at_ == sent_.size() ? begun_ : sent_[at_];
}

}  // namespace kelvaron
