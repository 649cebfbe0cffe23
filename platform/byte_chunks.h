// Bytes of many pieces of text, one behind the other in large chunks of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace kelvaron {

/// Only the last chunk grows, so a piece that is stored stays where it is. What a piece leaves
/// behind when it moves is lost until all is stored anew.
class ByteChunks {
 public:
  /// Where a piece lies; an empty one lies nowhere.
  struct Piece {
    std::uint32_t chunk = 0;
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
  };

  /// Valid until the next change.
  std::string_view bytes(const Piece& piece) const {
    if (piece.length == 0) return {};
    return {chunks_[piece.chunk].bytes.get() + piece.offset, piece.length};
  }
  Piece store(std::string_view bytes);
  /// Puts bytes behind a piece. One that isn't the last moves to the end.
  void extend(Piece& piece, std::string_view more);

  /// Bytes of all pieces, and what moves left behind.
  std::size_t stored() const { return stored_; }
  /// Bytes of memory held, without the allocator's own overhead.
  std::size_t memoryUsed() const;

  /// Memory is taken in chunks of this many bytes, or as much as one piece needs.
  static constexpr std::size_t kChunkBytes = std::size_t{1} << 20U;

 private:
  struct Chunk {
    std::unique_ptr<char[]> bytes;
    std::size_t used = 0;
    std::size_t capacity = 0;
  };

  std::size_t room() const {
    return chunks_.empty() ? 0 : chunks_.back().capacity - chunks_.back().used;
  }
  void addChunk(std::size_t capacity);
  void append(std::string_view bytes);
  Piece atEnd(std::size_t length) const;
  void makeRoomBehind(Piece& piece, std::size_t more);

  std::vector<Chunk> chunks_;
  std::size_t stored_ = 0;
};

}  // namespace kelvaron
