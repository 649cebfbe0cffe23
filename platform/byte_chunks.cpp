#include "platform/byte_chunks.h"

#include <algorithm>

namespace kelvaron {

void ByteChunks::addChunk(std::size_t capacity) {
  chunks_.push_back({std::make_unique_for_overwrite<char[]>(capacity), 0, capacity});
}

void ByteChunks::append(std::string_view bytes) {
  Chunk& chunk = chunks_.back();
  std::copy(bytes.begin(), bytes.end(), chunk.bytes.get() + chunk.used);
  chunk.used += bytes.size();
  stored_ += bytes.size();
}

ByteChunks::Piece ByteChunks::atEnd(std::size_t length) const {
  return {static_cast<std::uint32_t>(chunks_.size() - 1),
          static_cast<std::uint32_t>(chunks_.back().used), static_cast<std::uint32_t>(length)};
}

ByteChunks::Piece ByteChunks::store(std::string_view bytes) {
  if (bytes.empty()) return {};
  if (room() < bytes.size()) addChunk(std::max(kChunkBytes, bytes.size()));
  const Piece piece = atEnd(bytes.size());
  append(bytes);
  return piece;
}

void ByteChunks::extend(Piece& piece, std::string_view more) {
  if (more.empty()) return;
  makeRoomBehind(piece, more.size());
  append(more);
  piece.length += static_cast<std::uint32_t>(more.size());
}

/// Afterwards the piece ends where the last chunk does, with room for `more` bytes behind it.
void ByteChunks::makeRoomBehind(Piece& piece, std::size_t more) {
  const bool stored = piece.length != 0;
  const bool endsItsChunk =
      stored && chunks_[piece.chunk].used == std::size_t{piece.offset} + piece.length;
  if (endsItsChunk && piece.chunk + 1 == chunks_.size() && room() >= more) return;
  const std::size_t needed = piece.length + more;
  const Piece before = piece;
  // A long piece gets as much again, so that writing it in parts copies each byte a few times.
  if (room() < needed) addChunk(needed <= kChunkBytes / 2 ? kChunkBytes : 2 * needed);
  piece = atEnd(before.length);
  append(bytes(before));
  if (endsItsChunk && before.chunk != piece.chunk) {
    Chunk& left = chunks_[before.chunk];
    left.used -= before.length;
    stored_ -= before.length;
    if (left.used == 0) left = Chunk{};
  }
}

std::size_t ByteChunks::memoryUsed() const {
  std::size_t held = chunks_.capacity() * sizeof(Chunk);
  for (const Chunk& chunk : chunks_) held += chunk.capacity;
  return held;
}

}  // namespace kelvaron
