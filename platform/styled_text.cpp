#include "platform/styled_text.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace kelvaron {
namespace {

constexpr std::size_t kLongestLine = std::size_t{1} << 31U;
constexpr std::size_t kLinesPerOffset = 512;
constexpr std::size_t kLineEndBytes = 2;

constexpr auto isLineEnd = [](char c) { return c == '\r' || c == '\n'; };

/// Calls `piece` for the text up to each line end and for what follows the last one, and `lineEnd`
/// between them.
template <typename Piece, typename LineEnd>
void forEachPiece(std::string_view text, Piece piece, LineEnd lineEnd) {
  for (;;) {
    const auto found = std::find_if(text.begin(), text.end(), isLineEnd);
    const auto length = static_cast<std::size_t>(found - text.begin());
    piece(text.substr(0, length));
    if (found == text.end()) {
      return;
    }
    lineEnd();
    text.remove_prefix(text.substr(length).starts_with("\r\n") ? length + 2 : length + 1);
  }
}

std::uint32_t narrow(std::size_t value) { return static_cast<std::uint32_t>(value); }

}  // namespace

TextPosition StyledText::Change::follow(TextPosition before) const {
  if (cleared) {
    return {};
  }
  if (before <= TextPosition{first, column}) {
    return before;
  }
  if (before.line >= first + removed) {
    return {before.line - removed + inserted, before.column};
  }
  return {first + inserted - 1, before.column - column + endColumn};
}

StyledText::StyledText() { startLine(); }

std::size_t StyledText::lineCount() const { return lines_.size(); }

std::string_view StyledText::line(std::size_t index) const {
  return chunks_.bytes(lines_[index].bytes);
}

std::size_t StyledText::endOfRuns(std::size_t index) const {
  return index + 1 < lines_.size() ? lines_[index + 1].firstRun : runs_.size();
}

std::size_t StyledText::runCount(std::size_t index) const {
  return endOfRuns(index) - lines_[index].firstRun;
}

StyledText::Run StyledText::run(std::size_t index, std::size_t runIndex) const {
  const std::size_t stored = lines_[index].firstRun + runIndex;
  const bool last = stored + 1 == endOfRuns(index);
  return {runs_[stored].begin, last ? lines_[index].length() : runs_[stored + 1].begin,
          runs_[stored].style};
}

std::size_t StyledText::runAt(std::size_t index, std::size_t column) const {
  const auto begin = runs_.begin() + lines_[index].firstRun;
  const auto end = runs_.begin() + static_cast<std::ptrdiff_t>(endOfRuns(index));
  const auto behind =
      std::upper_bound(begin, end, column,
                       [](std::size_t value, const StoredRun& run) { return value < run.begin; });
  return static_cast<std::size_t>(behind - begin) - 1;
}

std::string StyledText::text() const { return text({0, 0}, end()); }

std::size_t StyledText::length() const {
  return contentBytes_ + kLineEndBytes * (lines_.size() - 1);
}

std::string StyledText::text(TextPosition from, TextPosition to, std::string_view lineEnd) const {
  from = clamped(from);
  to = clamped(to);
  if (to <= from) {
    return {};
  }
  std::string result;
  result.reserve(offsetOf(to) - offsetOf(from));
  for (std::size_t index = from.line; index <= to.line; ++index) {
    const std::string_view bytes = line(index);
    const std::size_t begin = index == from.line ? from.column : 0;
    const std::size_t end = index == to.line ? to.column : bytes.size();
    result.append(bytes.substr(begin, end - begin));
    if (index != to.line) {
      result.append(lineEnd);
    }
  }
  return result;
}

std::size_t StyledText::lineOffset(std::size_t index) const {
  const std::size_t known = index / kLinesPerOffset;
  std::size_t offset = offsets_[known];
  for (std::size_t i = known * kLinesPerOffset; i < index; ++i) {
    offset += lines_[i].length() + kLineEndBytes;
  }
  return offset;
}

std::size_t StyledText::offsetOf(TextPosition position) const {
  position = clamped(position);
  return lineOffset(position.line) + position.column;
}

TextPosition StyledText::positionOf(std::size_t offset) const {
  if (offset >= length()) {
    return end();
  }
  const auto behind = std::upper_bound(offsets_.begin(), offsets_.end(), offset);
  const auto known = static_cast<std::size_t>(behind - offsets_.begin()) - 1;
  std::size_t index = known * kLinesPerOffset;
  offset -= offsets_[known];
  while (offset >= lines_[index].length() + kLineEndBytes) {
    offset -= lines_[index].length() + kLineEndBytes;
    ++index;
  }
  return {index, std::min<std::size_t>(offset, lines_[index].length())};
}

TextPosition StyledText::end() const { return {lines_.size() - 1, lines_.back().length()}; }

TextPosition StyledText::clamped(TextPosition position) const {
  if (position.line >= lines_.size()) {
    return end();
  }
  return {position.line, std::min<std::size_t>(position.column, lines_[position.line].length())};
}

TextStyle StyledText::styleAt(TextPosition position) const {
  const Line& line = lines_[position.line];
  if (line.length() != 0) {
    const std::size_t character = position.column == 0 ? 0 : position.column - 1;
    return runs_[line.firstRun + runAt(position.line, character)].style;
  }
  return line.firstRun != 0 ? runs_[line.firstRun - 1].style : styleAtEnd_;
}

void StyledText::setCaret(TextPosition position) {
  caret_ = clamped(position);
  style_ = caret_ == end() ? styleAtEnd_ : styleAt(caret_);
}

void StyledText::setColor(Color color) {
  style_.color = color;
  if (caret_ == end()) {
    styleAtEnd_ = style_;
  }
}

void StyledText::setBold(bool bold) {
  style_.bold = bold;
  if (caret_ == end()) {
    styleAtEnd_ = style_;
  }
}

void StyledText::insert(std::string_view text) {
  if (text.empty()) {
    return;
  }
  const TextPosition from = caret_;
  if (caret_ == end()) {
    append(text);
    caret_ = end();
  } else {
    if (text.size() > kLongestLine - lines_[caret_.line].length()) {
      throw std::length_error("A line of the text view would be too long.");
    }
    insertInside(text);
  }
  if (onChange) {
    onChange({from.line, 1, caret_.line - from.line + 1, from.column, caret_.column, false});
  }
}

void StyledText::clear() {
  const std::size_t removed = lines_.size();
  chunks_ = {};
  lines_.clear();
  runs_.clear();
  offsets_.clear();
  contentBytes_ = 0;
  startLine();
  caretToEnd();
  if (onChange) {
    onChange({0, removed, 1, 0, 0, true});
  }
}

void StyledText::append(std::string_view text) {
  const auto appendSplit = [this](std::string_view piece) {
    for (std::size_t room = 0; (room = kSplitLine - lines_.back().length()) < piece.size();) {
      appendPiece(piece.substr(0, room));
      piece.remove_prefix(room);
      startLine();
    }
    appendPiece(piece);
  };
  forEachPiece(text, appendSplit, [this] { startLine(); });
}

void StyledText::startLine() {
  lines_.push_back({{}, narrow(runs_.size())});
  if ((lines_.size() - 1) % kLinesPerOffset == 0) {
    offsets_.push_back(length());
  }
}

void StyledText::appendPiece(std::string_view piece) {
  if (piece.empty()) {
    return;
  }
  Line& line = lines_.back();
  if (line.firstRun == runs_.size() || runs_.back().style != style_) {
    runs_.push_back({line.bytes.length, style_});
  }
  chunks_.extend(line.bytes, piece);
  contentBytes_ += piece.size();
}

void StyledText::insertInside(std::string_view text) {
  const std::size_t index = caret_.line;
  const std::string old{line(index)};
  std::vector<Run> oldRuns;
  for (std::size_t i = 0; i < runCount(index); ++i) {
    oldRuns.push_back(run(index, i));
  }

  std::vector<Line> lines;
  std::vector<StoredRun> runs;
  std::string bytes;
  std::size_t firstRun = 0;
  const auto add = [&](std::string_view piece, TextStyle style) {
    if (!piece.empty() && (runs.size() == firstRun || runs.back().style != style)) {
      runs.push_back({narrow(bytes.size()), style});
    }
    bytes.append(piece);
  };
  const auto addOld = [&](std::size_t begin, std::size_t end) {
    for (const Run& run : oldRuns) {
      const std::size_t from = std::max(run.begin, begin);
      const std::size_t to = std::min(run.end, end);
      if (from < to) {
        add(std::string_view(old).substr(from, to - from), run.style);
      }
    }
  };
  const auto finishLine = [&] {
    lines.push_back({chunks_.store(bytes), narrow(firstRun)});
    firstRun = runs.size();
    bytes.clear();
  };

  addOld(0, caret_.column);
  forEachPiece(
      text, [&](std::string_view piece) { add(piece, style_); }, finishLine);
  const TextPosition behind{index + lines.size(), bytes.size()};
  addOld(caret_.column, old.size());
  finishLine();

  replaceLine(index, lines, runs);
  caret_ = behind;
  compactWhenWasteful();
}

/// Puts lines in the place of one; their `firstRun` counts from 0 in `runs`.
void StyledText::replaceLine(std::size_t index, const std::vector<Line>& lines,
                             const std::vector<StoredRun>& runs) {
  const std::size_t firstRun = lines_[index].firstRun;
  const std::size_t behindRuns = endOfRuns(index);
  const std::uint32_t shift = narrow(firstRun + runs.size()) - narrow(behindRuns);
  contentBytes_ -= lines_[index].length();

  const auto oldRun = runs_.begin() + static_cast<std::ptrdiff_t>(firstRun);
  const auto runPlace =
      runs_.erase(oldRun, runs_.begin() + static_cast<std::ptrdiff_t>(behindRuns));
  runs_.insert(runPlace, runs.begin(), runs.end());

  lines_[index] = lines.front();
  auto place = lines_.begin() + static_cast<std::ptrdiff_t>(index);
  if (lines.size() > 1) {
    lines_.insert(place + 1, lines.begin() + 1, lines.end());
  }
  const std::size_t behindLines = index + lines.size();
  for (std::size_t i = index; i < behindLines; ++i) {
    lines_[i].firstRun += narrow(firstRun);
    contentBytes_ += lines_[i].length();
  }
  if (shift != 0) {
    for (std::size_t i = behindLines; i < lines_.size(); ++i) {
      lines_[i].firstRun += shift;  // unsigned: a negative shift wraps round to the right number
    }
  }

  offsets_.resize(index / kLinesPerOffset + 1);
  std::size_t offset = offsets_.back();
  for (std::size_t i = (offsets_.size() - 1) * kLinesPerOffset; i < lines_.size(); ++i) {
    if (i % kLinesPerOffset == 0 && i / kLinesPerOffset == offsets_.size()) {
      offsets_.push_back(offset);
    }
    offset += lines_[i].length() + kLineEndBytes;
  }
}

/// Insertions leave the old bytes of their line behind; once they are more than the text itself,
/// the text is stored anew.
void StyledText::compactWhenWasteful() {
  const std::size_t waste = chunks_.stored() - contentBytes_;
  if (waste <= std::max(contentBytes_, ByteChunks::kChunkBytes)) {
    return;
  }
  const ByteChunks old = std::exchange(chunks_, {});
  for (Line& line : lines_) line.bytes = chunks_.store(old.bytes(line.bytes));
}

std::size_t StyledText::memoryUsed() const {
  return chunks_.memoryUsed() + offsets_.capacity() * sizeof(offsets_[0]) +
         lines_.size() * sizeof(Line) + runs_.size() * sizeof(StoredRun);
}

}  // namespace kelvaron
