#include "native/send_queue.h"

namespace kelvaron {
namespace {

/// A drained queue gives its memory back from this capacity (in bytes) on.
constexpr std::size_t kCapacityToKeep = std::size_t{64} << 10U;

}  // namespace

void SendQueue::consume(std::size_t count) {
  consumed_ += count;
  if (consumed_ == bytes_.size()) return clear();
  if (consumed_ < bytes_.size() / 2) return;
  bytes_.erase(0, consumed_);
  consumed_ = 0;
}

void SendQueue::clear() {
  bytes_.clear();
  if (bytes_.capacity() > kCapacityToKeep) bytes_.shrink_to_fit();
  consumed_ = 0;
}

}  // namespace kelvaron
