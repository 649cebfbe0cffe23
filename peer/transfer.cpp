#include "peer/transfer.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "base/code_page.h"
#include "platform/fault.h"

namespace kelvaron {
namespace {

constexpr std::string_view kMarker = "FILEINFO|";
// Fields of the header, counted from 1.
constexpr int kSizeField = 2;
constexpr int kNameField = 3;
// Names of most disks have at most 255 bytes. What is not all there yet has some behind its name.
constexpr std::size_t kLongestName = 240;
constexpr std::size_t kLongestExtension = 16;

bool namesDrive(std::string_view name) {
  const auto letter = static_cast<unsigned char>(name.empty() ? 0 : name[0] | 0x20);
  return name.size() >= 2 && name[1] == ':' && letter >= 'a' && letter <= 'z';
}

// Cuts the middle of a name that is too long, so that it keeps its extension.
std::string fitted(const std::string& name) {
  if (toUtf8(name).size() <= kLongestName) return name;
  const std::size_t dot = std::min(name.rfind('.'), name.size());
  const std::string extension = name.size() - dot > kLongestExtension ? "" : name.substr(dot);
  std::string stem = name.substr(0, std::min(kLongestName, name.size() - extension.size()));
  while (toUtf8(stem + extension).size() > kLongestName) stem.pop_back();
  return stem + extension;
}

// Empty when nothing is left that could be a name.
std::string bareName(std::string_view path) {
  std::string_view name = path.substr(path.find_last_of("/\\") + 1);
  while (namesDrive(name)) name.remove_prefix(2);
  if (name == "." || name == "..") return {};
  std::string bare(name);
  std::ranges::replace_if(bare, isControl, '_');
  return fitted(bare);
}

}  // namespace

std::string transferHeader(std::int64_t size, std::string_view name) {
  std::string sent(name);
  std::ranges::replace_if(
      sent, [](char character) { return character == '|' || isControl(character); }, '_');
  return std::string(kMarker) + std::to_string(size) + '|' + sent + '|';
}

std::string_view GetField(std::string_view Field, int FieldPos) {
  for (int position = 1;; ++position) {
    const std::size_t bar = Field.find('|');
    if (bar == std::string_view::npos || FieldPos < 1) return {};
    if (position == FieldPos) return Field.substr(0, bar);
    Field.remove_prefix(bar + 1);
  }
}

HeaderReader::Outcome HeaderReader::take(std::string_view& arrival) {
  while (outcome_ == Outcome::unfinished && !arrival.empty()) {
    const char next = arrival.front();
    arrival.remove_prefix(1);
    header_ += next;
    const std::size_t length = header_.size();
    if (length <= kMarker.size() ? next != kMarker[length - 1] : length > kLongestHeader) {
      outcome_ = Outcome::refused;
    } else if (next == '|' && ++bars_ == kNameField) {
      outcome_ = read();
    }
  }
  return outcome_;
}

HeaderReader::Outcome HeaderReader::read() {
  sizeText_ = GetField(header_, kSizeField);
  const char* const end = sizeText_.data() + sizeText_.size();
  const auto [stop, error] = std::from_chars(sizeText_.data(), end, size_);
  const bool number = error == std::errc() && stop == end && sizeText_.front() != '-';
  name_ = bareName(GetField(header_, kNameField));
  return number && size_ <= kLongestFile && !name_.empty() ? Outcome::whole : Outcome::refused;
}

int stateNumber(SocketState state) {
  switch (state) {
    case SocketState::closed:
      return 0;
    case SocketState::listening:
      return 2;
    case SocketState::connecting:
      return 6;
    case SocketState::connected:
      return 7;
    case SocketState::peerClosing:
      return 8;
    case SocketState::failed:
      break;
  }
  return 9;
}

std::string completeCaption(std::int64_t done, std::int64_t size) {
  const std::int64_t percent = size == 0 ? 100 : done * 100 / size;
  return "Complete: " + std::to_string(percent) + " %";
}

std::string averageCaption(std::int64_t bytes) {
  // Tenths of a thousand, half a tenth rounded up.
  const std::int64_t tenths = (bytes + 50) / 100;
  return "Average: " + std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " / KBps";
}

std::uint16_t portNumber(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  const std::size_t last = text.find_last_not_of(' ');
  std::int64_t number = 0;
  const char* const begin = text.data() + (first == std::string::npos ? text.size() : first);
  const char* const end = text.data() + (first == std::string::npos ? text.size() : last + 1);
  const auto [stop, error] = std::from_chars(begin, end, number);
  if (begin == end || stop != end || error == std::errc::invalid_argument) {
    throw Fault(fault_number::kTypeMismatch, "The port \"" + text + "\" is not a number");
  }
  if (error != std::errc() || number < 0 || number > std::numeric_limits<std::uint16_t>::max()) {
    throw Fault(fault_number::kOverflow, "The port " + text + " is not between 0 and 65535");
  }
  return static_cast<std::uint16_t>(number);
}

}  // namespace kelvaron
