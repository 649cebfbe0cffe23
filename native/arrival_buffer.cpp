#include "native/arrival_buffer.h"

#include <utility>

namespace kelvaron {

void ArrivalBuffer::append(std::string_view bytes, Time now) {
  const bool hadTail = hasTail();
  const std::size_t before = bytes_.size();
  bytes_.append(bytes);
  if (!holdBack_) return releaseTail();

  const std::size_t lineFeed = bytes.rfind('\n');
  const bool lineEnded = lineFeed != std::string_view::npos;
  if (lineEnded) arrived_ = before + lineFeed + 1;
  if (!hadTail || lineEnded) tailSince_ = now;
  if (bytes_.size() - arrived_ > kLongestTail) releaseTail();
}

std::string ArrivalBuffer::take() {
  std::string tail = bytes_.substr(arrived_);
  bytes_.resize(arrived_);
  arrived_ = 0;
  return std::exchange(bytes_, std::move(tail));
}

void ArrivalBuffer::clear() {
  bytes_.clear();
  bytes_.shrink_to_fit();
  arrived_ = 0;
}

}  // namespace kelvaron
