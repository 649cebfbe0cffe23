// Reading by the worker, so that a ban that is just being stored is among what is read.
#include "server/records.h"

#include <algorithm>
#include <utility>

#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::seconds kBetweenLooks(1);
constexpr std::chrono::seconds kStoreAgain(10);

bool sameNick(std::string_view one, std::string_view other) { return fold(one) == fold(other); }

}  // namespace

Records::Records(asio::io_context& io, Store store, Log log)
    : store_(std::move(store)), log_(std::move(log)), worker_(io) {
  take(read(store_));
}

Records::Files Records::read(const Store& store) {
  // The stamp first: what changes meanwhile is seen as a change later.
  const Store::Stamp stamp = store.stamp();
  return {store.reserved(), store.moderators(), store.bans(),
          store.motd(),     store.settings(),   stamp};
}

void Records::take(Files files) {
  reserved_ = std::move(files.reserved);
  moderators_.clear();
  for (Moderator& each : files.moderators) moderators_[fold(each.nick)] = std::move(each);
  bans_ = std::move(files.bans);
  for (const Ban& ban : unstored_) {
    if (std::find(bans_.begin(), bans_.end(), ban) == bans_.end()) bans_.push_back(ban);
  }
  motd_ = std::move(files.motd);
  stamp_ = files.stamp;
}

bool Records::isReserved(std::string_view nick) const {
  return std::any_of(reserved_.begin(), reserved_.end(),
                     [&](const std::string& other) { return sameNick(other, nick); });
}

bool Records::isBanned(std::string_view nick, std::string_view address) const {
  return std::any_of(bans_.begin(), bans_.end(),
                     [&](const Ban& ban) { return ban.keepsOut(nick, address); });
}

const Moderator* Records::moderator(std::string_view nick) const {
  const auto found = moderators_.find(fold(nick));
  return found == moderators_.end() ? nullptr : &found->second;
}

void Records::addBan(const Ban& ban, std::function<void()> failed) {
  bans_.push_back(ban);
  unstored_.push_back(ban);
  failed_.push_back(std::move(failed));
  storeBans();
}

void Records::storeBans() {
  if (storing_ || unstored_.empty()) return;
  storing_ = true;
  const auto job = [store = store_, bans = unstored_] {
    store.addBans(bans);
    return true;
  };
  worker_.run(job, [this, count = static_cast<std::ptrdiff_t>(unstored_.size()), told = failed_](
                       std::optional<bool> /*stored*/, const std::string& error) {
    storing_ = false;
    failed_.erase(failed_.begin(), failed_.begin() + static_cast<std::ptrdiff_t>(told.size()));
    if (error.empty()) {
      unstored_.erase(unstored_.begin(), unstored_.begin() + count);
      if (std::exchange(storeFailed_, false)) log_("the bans are stored now");
      return storeBans();
    }
    if (!std::exchange(storeFailed_, true)) log_("bans can't be stored: " + error);
    storeAt_ = Clock::now() + kStoreAgain;
    for (const auto& tell : told) tell();
  });
}

void Records::noteToldAddress(std::string_view nick, std::string_view told) {
  for (Ban& ban : unstored_) {
    if (sameNick(ban.nick, nick)) ban.told = told;
  }
  const auto job = [store = store_, whose = std::string(nick), address = std::string(told)] {
    store.noteToldAddress(whose, address);
    return true;
  };
  worker_.run(job, [this](std::optional<bool> /*noted*/, const std::string& error) {
    if (!error.empty()) log_(error);
  });
}

void Records::reload(std::function<void(const Settings&)> taken) {
  worker_.run(
      [store = store_] { return read(store); },
      [this, taken = std::move(taken)](std::optional<Files> files, const std::string& error) {
        if (!files) return log_("not read anew: " + error);
        taken(files->settings);
        take(std::move(*files));
        log_("the files of the folder are read anew");
      });
}

void Records::sweep(Clock::time_point now) {
  if (now >= storeAt_) storeBans();
  if (now >= watchAt_) {
    watchAt_ = now + kBetweenLooks;
    watch();
  }
}

// Only what the program changes beside a running server, so that a half-edited message of the day
// waits for its HUP.
void Records::watch() {
  if (std::exchange(watching_, true)) return;
  struct Changed {
    Store::Stamp stamp;
    std::vector<Moderator> moderators;
    std::vector<Ban> bans;
    std::string problem;
  };
  const auto job = [store = store_, known = stamp_]() -> std::optional<Changed> {
    Changed changed{store.stamp(), {}, {}, {}};
    if (changed.stamp == known) return std::nullopt;
    try {
      changed.moderators = store.moderators();
      changed.bans = store.bans();
    } catch (const StoreError& error) {
      changed.problem = error.what();
    }
    return changed;
  };
  worker_.run(job, [this](std::optional<std::optional<Changed>> done, const std::string& error) {
    watching_ = false;
    if (!error.empty()) return log_(error);
    if (!done || !*done) return;
    Changed& changed = **done;
    if (changed.problem.empty()) {
      take({reserved_,
            std::move(changed.moderators),
            std::move(changed.bans),
            motd_,
            {},
            changed.stamp});
    } else {
      stamp_ = changed.stamp;
      log_("not read anew: " + changed.problem);
    }
  });
}

}  // namespace kelvaron::server
