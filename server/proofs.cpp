#include "server/proofs.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "server/password.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::minutes kRemembered(10);
constexpr std::size_t kMostWaiting = 256;
constexpr long kMostWaitingOfASource = 2;
// Of no password. A nickname that nobody has registered costs the time of one that somebody has.
constexpr const char* kNobodysHash =
    "$argon2id$v=19$m=65536,t=2,p=1$c29tZSBzYWx0IGhlcmUuLg$"
    "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";

}  // namespace

bool Proofs::isLookedAt(const Proof& proof) const {
  const long times = proof.source->local ? settings_.localTimes : 1;
  if (proof.source->proofsFailed >= settings_.proofsPerAddress * times) return false;
  if (proof.source->local) return true;
  const auto account = accounts_.find(fold(proof.nick));
  return account == accounts_.end() || account->second.failed < settings_.proofsPerAccount ||
         !account->second.failedFrom.contains(proof.sourceName);
}

bool Proofs::ask(Proof proof, const Moderator* moderator, Done done) {
  const auto ofSource = std::count_if(waiting_.begin(), waiting_.end(), [&](const Waiting& each) {
    return each.proof.source == proof.source;
  });
  if (!isLookedAt(proof) || (!proof.source->local && ofSource >= kMostWaitingOfASource)) {
    return false;
  }
  const long rank = proof.source->proofsFailed + ofSource;
  if (waiting_.size() >= kMostWaiting && !makeRoom(rank)) return false;
  waiting_.push_back({std::move(proof), moderator == nullptr ? Moderator{} : *moderator,
                      moderator != nullptr, std::move(done), rank});
  next();
  return true;
}

bool Proofs::makeRoom(long rank) {
  const auto last = std::max_element(
      waiting_.begin(), waiting_.end(),
      [](const Waiting& one, const Waiting& other) { return one.rank < other.rank; });
  if (last->rank <= rank) return false;
  const Done done = std::move(last->done);
  waiting_.erase(last);
  done(Outcome::tooMany, "");
  return true;
}

void Proofs::next() {
  if (running_ || waiting_.empty()) return;
  running_ = true;
  // Of the same rank the newest: when more come than can be looked at, an honest one doesn't wait
  // for all that came to hold it up.
  const auto first = std::min_element(
      waiting_.rbegin(), waiting_.rend(),
      [](const Waiting& one, const Waiting& other) { return one.rank < other.rank; });
  auto asked = std::make_shared<Waiting>(std::move(*first));
  waiting_.erase(std::next(first).base());
  const auto job = [asked] {
    const Moderator& moderator = asked->moderator;
    const bool known = asked->registered;
    const bool password =
        isPassword(known ? std::string_view(moderator.hash) : kNobodysHash, asked->proof.password);
    return password && known && fold(moderator.email) == fold(asked->proof.email);
  };
  worker_.run(job, [this, asked](std::optional<bool> right, const std::string& error) {
    running_ = false;
    if (right && !*right) countWrong(*asked);
    const Outcome outcome = !right ? Outcome::failed : *right ? Outcome::right : Outcome::wrong;
    asked->done(outcome, error);
    next();
  });
}

void Proofs::countWrong(const Waiting& waiting) {
  const Clock::time_point forgottenAt = Clock::now() + kRemembered;
  Source& source = *waiting.proof.source;
  ++source.proofsFailed;
  source.proofsForgottenAt = forgottenAt;
  if (!waiting.registered) return;
  Account& account = accounts_[fold(waiting.proof.nick)];
  ++account.failed;
  account.failedFrom.insert(waiting.proof.sourceName);
  account.forgottenAt = forgottenAt;
}

void Proofs::sweep(Clock::time_point now) {
  std::erase_if(accounts_, [&](const auto& each) { return now >= each.second.forgottenAt; });
}

}  // namespace kelvaron::server
