#include "server/wrong_proofs.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::minutes kRemembered(10);

template <class Counts>
void countDown(Counts& counts, const typename Counts::key_type& key) {
  const auto found = counts.find(key);
  if (--found->second == 0) counts.erase(found);
}

}  // namespace

void WrongProofs::add(std::string source, std::string account, Clock::time_point now) {
  ++bySource_[source];
  if (!account.empty()) {
    ++byAccount_[account];
    ++pairs_[{source, account}];
  }
  wrong_.push_back({now, std::move(source), std::move(account)});
}

void WrongProofs::forget(Clock::time_point now) {
  for (; !wrong_.empty() && now - wrong_.front().at >= kRemembered; wrong_.pop_front()) {
    const Wrong& oldest = wrong_.front();
    countDown(bySource_, oldest.source);
    if (oldest.account.empty()) continue;
    countDown(byAccount_, oldest.account);
    countDown(pairs_, {oldest.source, oldest.account});
  }
}

}  // namespace kelvaron::server
