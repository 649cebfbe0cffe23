#include "server/proofs.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "server/address.h"
#include "server/password.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::size_t kMostWaiting = 256;
constexpr long kMostWaitingOfASource = 2;
// Of no password. A nickname that nobody has registered costs the time of one that somebody has.
constexpr const char* kNobodysHash =
    "$argon2id$v=19$m=65536,t=2,p=1$c29tZSBzYWx0IGhlcmUuLg$"
    "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA";

}  // namespace

bool Proofs::isLookedAt(const std::string& source, const std::string& account) const {
  const bool local = isLoopback(source);
  const long times = local ? settings_.localTimes : 1;
  if (wrong_.from(source) >= settings_.proofsPerAddress * times) return false;
  return local || wrong_.of(account) < settings_.proofsPerAccount || !wrong_.has(source, account);
}

bool Proofs::ask(Proof proof, const Moderator* moderator, Done done) {
  std::string source = sourceName(proof.address);
  const auto ofSource = std::ranges::count(waiting_, source, &Waiting::source);
  if (!isLookedAt(source, fold(proof.nick)) ||
      (!isLoopback(source) && ofSource >= kMostWaitingOfASource)) {
    return false;
  }
  const long rank = wrong_.from(source) + ofSource;
  if (waiting_.size() >= kMostWaiting && !makeRoom(rank)) return false;
  waiting_.push_back({std::move(proof), std::move(source),
                      moderator == nullptr ? Moderator{} : *moderator, moderator != nullptr,
                      std::move(done), rank});
  next();
  return true;
}

bool Proofs::makeRoom(long rank) {
  const auto last = std::ranges::max_element(waiting_, {}, &Waiting::rank);
  if (last->rank <= rank) return false;
  const Done done = std::move(last->done);
  waiting_.erase(last);
  done(Outcome::tooMany, "");
  return true;
}

void Proofs::next() {
  if (running_ || waiting_.empty()) return;
  // Of the same rank the newest: when more come than can be looked at, an honest one doesn't wait
  // for all that came to hold it up.
  const auto first =
      std::ranges::min_element(waiting_.rbegin(), waiting_.rend(), {}, &Waiting::rank);
  auto asked = std::make_shared<Waiting>(std::move(*first));
  waiting_.erase(std::next(first).base());
  if (!isLookedAt(asked->source, fold(asked->proof.nick))) {
    asked->done(Outcome::tooMany, "");
    return next();
  }
  running_ = true;
  const auto job = [asked] {
    const Moderator& moderator = asked->moderator;
    const bool known = asked->registered;
    const bool password =
        isPassword(known ? std::string_view(moderator.hash) : kNobodysHash, asked->proof.password);
    return password && known && fold(moderator.email) == fold(asked->proof.email);
  };
  worker_.run(job, [this, asked](std::optional<bool> right, const std::string& error) {
    running_ = false;
    if (right && !*right) {
      wrong_.add(asked->source, asked->registered ? fold(asked->proof.nick) : "", Clock::now());
    }
    const Outcome outcome = !right ? Outcome::failed : *right ? Outcome::right : Outcome::wrong;
    asked->done(outcome, error);
    next();
  });
}

}  // namespace kelvaron::server
