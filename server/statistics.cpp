#include "server/statistics.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/resident_bytes.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::minutes kSampled(1);
constexpr std::chrono::seconds kBetweenSamples(5);

}  // namespace

std::optional<std::string> Statistics::next(std::size_t clients, bool onlyTraffic) {
  if (onlyTraffic && now_ == told_) return std::nullopt;
  const auto at = Clock::now();
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
         std::to_string(residentBytes() / kMiB) + " MiB of memory";
}

void Statistics::sample(Clock::time_point now) {
  if (now - samples_.back().at < kBetweenSamples) return;
  samples_.push_back({now, now_});
  while (samples_.size() > 1 && now - samples_.front().at > kSampled) samples_.pop_front();
}

Status Statistics::status(Clock::time_point now) const {
  const Sample& first = samples_.front();
  const std::chrono::duration<double> time = now - first.at;
  const auto rate = [&](std::uint64_t Counts::*count) {
    return std::lround(static_cast<double>(now_.*count - first.counts.*count) /
                       std::max(time.count(), 1.0));
  };
  return {.since = since_,
          .linesPerSecond = rate(&Counts::lines),
          .bytesPerSecond = rate(&Counts::bytes),
          .refusals = now_.refusals,
          .memory = residentBytes()};
}

}  // namespace kelvaron::server
