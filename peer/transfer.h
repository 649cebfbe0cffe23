// What sending and receiving a file have in common: the header of the stream, and the displays.
//
// One connection carries one file, from the side that connects to the side that listens: the header
// FILEINFO|size|name| and then the file's bytes, as many as announced. Nothing travels back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/socket.h"

namespace kelvaron {

/// The longest file that the header can announce, in bytes.
inline constexpr std::int64_t kLongestFile = 2'147'483'647;
/// A header that is longer than so many bytes is none.
inline constexpr std::size_t kLongestHeader = 4096;
/// How the displays read when all has gone over, and what they read from the next second on.
inline constexpr std::string_view kWholeCaption = "Complete: 100 %";
inline constexpr std::string_view kDoneCaption = "Comlpete!";

/// The header of a file. In `name` a bar, which would end it, and control characters become "_".
std::string transferHeader(std::int64_t size, std::string_view name);

/// The text in front of bar number `FieldPos` ("|", counted from 1) and behind the bar before that.
/// Empty when there is no such bar.
std::string_view GetField(std::string_view Field, int FieldPos);

/// Takes a header apart that may come in pieces.
class HeaderReader {
 public:
  enum class Outcome { unfinished, whole, refused };

  /// Takes header bytes off the front of an arrival; what follows the header stays. Once it isn't
  /// `unfinished` any more it takes nothing.
  Outcome take(std::string_view& arrival);

  /// These count when the header is whole.
  std::int64_t size() const { return size_; }
  /// The size as the header spells it.
  const std::string& sizeText() const { return sizeText_; }
  /// Bare: without folder parts, control characters as "_", of a length that disks take.
  const std::string& name() const { return name_; }

 private:
  Outcome read();

  Outcome outcome_ = Outcome::unfinished;
  std::string header_;
  int bars_ = 0;
  std::int64_t size_ = 0;
  std::string sizeText_;
  std::string name_;
};

/// The state's number as the status labels tell it.
int stateNumber(SocketState state);
/// "Complete: " and how much of the size that is, in percent rounded down. All of nothing is 100.
std::string completeCaption(std::int64_t done, std::int64_t size);
/// "Average: " and thousands of bytes with one decimal.
std::string averageCaption(std::int64_t bytes);
/// A port from the text of a box. Fault 13 for no number, 6 for one that no port has.
std::uint16_t portNumber(const std::string& text);

}  // namespace kelvaron
