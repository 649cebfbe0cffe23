#include "native/posix/ping_output.h"

#include <algorithm>
#include <array>

#include "base/code_page.h"

namespace kelvaron {
namespace {

constexpr std::string_view kHeading = "PING ";
constexpr std::size_t kMostPrinted = 4096;

}  // namespace

void PingOutput::append(std::string_view printed) {
  if (!tooLong()) printed_.append(printed);
}

bool PingOutput::tooLong() const { return printed_.size() > kMostPrinted; }

bool PingOutput::sent() const { return printed_.find(kHeading) != std::string::npos; }

bool PingOutput::replied() const {
  constexpr std::array<std::string_view, 3> kWays = {" 1 received", " 1 packets received",
                                                     " 1 packet received"};
  return std::ranges::any_of(
      kWays, [&](std::string_view way) { return printed_.find(way) != std::string::npos; });
}

std::string PingOutput::lastLine() const {
  const std::size_t end = printed_.find_last_not_of("\r\n");
  if (end == std::string::npos) return {};
  const std::string_view text = std::string_view(printed_).substr(0, end + 1);
  return fromUtf8(text.substr(text.find_last_of("\r\n") + 1));
}

}  // namespace kelvaron
