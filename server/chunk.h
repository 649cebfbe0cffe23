// Lines that wait to be sent: one text, shared by all queues that hold a part of it, and counted
// once.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron::server {

/// Bytes that the whole server holds for its clients. Outlives what is counted in it.
using Held = std::shared_ptr<std::size_t>;

class Chunk : NonCopyable {
 public:
  /// So many bytes of short lines are gathered in one chunk.
  static constexpr std::size_t kSize = 16'384;

  Chunk(std::string text, Held held) : text_(std::move(text)), held_(std::move(held)) {
    *held_ += text_.capacity();
  }
  ~Chunk() { *held_ -= text_.capacity(); }

  bool takes(std::size_t bytes) const { return text_.size() + bytes <= kSize; }
  void append(std::string_view lines) {
    *held_ -= text_.capacity();
    text_.append(lines);
    *held_ += text_.capacity();
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
  Held held_;
};

/// Whole lines with their line ends.
struct Piece {
  std::shared_ptr<Chunk> chunk;
  std::size_t begin = 0;
  std::size_t end = 0;

  std::size_t size() const { return end - begin; }
};

}  // namespace kelvaron::server
