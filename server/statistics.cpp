#include "server/statistics.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <utility>

namespace kelvaron::server {
namespace {

/// The memory of this program, in bytes; 0 when the system doesn't tell.
std::uint64_t residentMemory() {
  std::ifstream file("/proc/self/statm");
  std::uint64_t whole = 0;
  std::uint64_t resident = 0;
  file >> whole >> resident;
  return file ? resident * static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE)) : 0;
}

}  // namespace

std::optional<std::string> Statistics::next(std::size_t clients, bool onlyTraffic) {
  if (onlyTraffic && now_ == told_) return std::nullopt;
  const auto at = std::chrono::steady_clock::now();
  const std::chrono::duration<double> time = at - std::exchange(toldAt_, at);
  const Counts before = std::exchange(told_, now_);
  const double seconds = std::max(time.count(), 0.001);
  const auto rate = [&](std::uint64_t Counts::*count) {
    return std::to_string(std::lround(static_cast<double>(now_.*count - before.*count) / seconds));
  };
  constexpr std::uint64_t kMiB = 1'048'576;
  return "statistics of " + std::to_string(std::lround(seconds)) +
         " s: " + std::to_string(clients) + " clients, " + rate(&Counts::lines) +
         " lines a second from them, " + rate(&Counts::bytes) + " bytes a second to them, " +
         std::to_string(now_.lists - before.lists) + " lists, " +
         std::to_string(now_.refusals - before.refusals) + " refusals, " +
         std::to_string(residentMemory() / kMiB) + " MiB of memory";
}

}  // namespace kelvaron::server
