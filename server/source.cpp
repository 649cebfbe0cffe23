// Allowances and the book of addresses.
#include "server/source.h"

#include <algorithm>

#include "server/address.h"

namespace kelvaron::server {

void Allowance::fill(const Rate& rate, Clock::time_point now) {
  if (begun_) {
    const std::chrono::duration<double> elapsed = now - filledAt_;
    left_ = std::min(left_ + elapsed.count() * rate.perSecond, rate.burst);
  } else {
    left_ = rate.burst;
    begun_ = true;
  }
  filledAt_ = now;
}

Clock::duration Allowance::waitFor(const Rate& rate, Clock::time_point now) {
  fill(rate, now);
  if (left_ >= 1.0) return Clock::duration::zero();
  const std::chrono::duration<double> needed((1.0 - left_) / rate.perSecond);
  return std::chrono::ceil<std::chrono::milliseconds>(needed);
}

bool Allowance::isFull(const Rate& rate, Clock::time_point now) {
  fill(rate, now);
  return left_ >= rate.burst;
}

std::shared_ptr<Source> Sources::of(std::string_view address) {
  std::shared_ptr<Source>& source = sources_[sourceName(address)];
  if (!source) {
    source = std::make_shared<Source>();
    source->local = isLoopback(address);
  }
  return source;
}

Rate Sources::lineRate(const Source& source) const {
  const auto times = static_cast<double>(source.local ? settings_.localTimes : 1);
  return {times * static_cast<double>(settings_.burstLines),
          times * static_cast<double>(settings_.linesPerSecond)};
}

Rate Sources::loginRate(const Source& source) const {
  const auto times = static_cast<double>(source.local ? settings_.localTimes : 1);
  return {times * static_cast<double>(settings_.burstLogins),
          times * static_cast<double>(settings_.loginsPerMinute) / 60.0};
}

Sources::Untold Sources::sweep(Clock::time_point now) {
  Untold untold;
  std::erase_if(sources_, [&](const auto& each) {
    Source& source = *each.second;
    const bool forgotten = source.connections == 0 && source.lines.isFull(lineRate(source), now) &&
                           source.logins.isFull(loginRate(source), now);
    if (forgotten && source.refusalsNotLogged > 0) {
      ++untold.addresses;
      untold.refusals += source.refusalsNotLogged;
    }
    return forgotten;
  });
  return untold;
}

}  // namespace kelvaron::server
