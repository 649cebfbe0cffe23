// Reading by the worker, so that a ban that is just being stored is among what is read.
#include "server/records.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks(500);
constexpr std::chrono::seconds kStoreAgain(10);

// What clients show for a place of a game that nobody has; in upper case.
constexpr std::string_view kEmptyPlace = "NONE";

bool sameNick(std::string_view one, std::string_view other) { return fold(one) == fold(other); }

}  // namespace

Records::Records(asio::io_context& io, Store store, Log log)
    : store_(std::move(store)), log_(std::move(log)), worker_(io) {
  take(readFixed(store_));
  take(readLists(store_));
}

void Records::tellChanges(const Lists& lists) const {
  std::set<std::string> nicks;
  for (const Moderator& each : lists.moderators) {
    nicks.insert(fold(each.nick));
    if (!moderators_.contains(fold(each.nick))) log_("moderator added: " + forLog(each.nick));
  }
  for (const auto& [nick, each] : moderators_) {
    if (!nicks.contains(nick)) log_("moderator removed: " + forLog(each.nick));
  }
  const auto holds = [](const std::vector<Ban>& bans, const Ban& ban) {
    return std::ranges::any_of(bans, [&](const Ban& each) { return each.isSameAs(ban); });
  };
  for (const Ban& each : bans_) {
    if (!holds(lists.bans, each) && !holds(unstored_, each)) {
      log_("ban lifted: " + forLog(each.who()));
    }
  }
  for (const Ban& each : lists.bans) {
    if (holds(bans_, each)) continue;
    log_("ban set: " + forLog(each.who()) + ", by " + forLog(each.by) + ": " + forLog(each.reason));
    if (onNewBan) onNewBan(each);
  }
}

Records::Fixed Records::readFixed(const Store& store) {
  return {.reserved = store.reserved(),
          .motd = store.motd(),
          .motdProblems = store.motdProblems(),
          .settings = store.settings()};
}

// The stamp first: what changes meanwhile is seen as a change later.
Records::Lists Records::readLists(const Store& store) {
  return {.stamp = store.stamp(), .moderators = store.moderators(), .bans = store.bans()};
}

void Records::take(Fixed fixed) {
  reserved_ = std::move(fixed.reserved);
  motd_ = std::move(fixed.motd);
  for (const std::string& problem : fixed.motdProblems) log_(problem);
}

void Records::take(Lists lists) {
  stamp_ = lists.stamp;
  moderators_.clear();
  for (Moderator& each : lists.moderators) moderators_[fold(each.nick)] = std::move(each);
  bans_ = std::move(lists.bans);
  for (const Ban& ban : unstored_) {
    if (std::ranges::find(bans_, ban) == bans_.end()) bans_.push_back(ban);
  }
}

void Records::takeChanged(Lists lists) {
  tellChanges(lists);
  take(std::move(lists));
}

bool Records::isReserved(std::string_view nick) const {
  const std::string like = likeness(nick);
  return like == kEmptyPlace || std::ranges::find(reserved_, like, likeness) != reserved_.end();
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
  const auto job = [store = store_, bans = unstored_] { store.addBans(bans); };
  worker_.run(job, [this, count = static_cast<std::ptrdiff_t>(unstored_.size()),
                    told = failed_](const std::string& error) {
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
  worker_.run([store = store_, whose = std::string(nick),
               address = std::string(told)] { store.noteToldAddress(whose, address); },
              [this](const std::string& error) {
                if (!error.empty()) log_(error);
              });
}

void Records::reload(std::function<void(const Settings&)> taken) {
  const auto job = [store = store_] { return std::pair(readFixed(store), readLists(store)); };
  worker_.run(job, [this, taken = std::move(taken)](auto files, const std::string& error) {
    if (!files) return log_("not read anew: " + error);
    taken(files->first.settings);
    take(std::move(files->first));
    takeChanged(std::move(files->second));
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
  struct Look {
    Store::Stamp stamp;
    std::optional<Lists> lists;  // when they have changed and can be read
    std::string problem{};
  };
  const auto job = [store = store_, known = stamp_] {
    Look look{store.stamp(), {}};
    if (look.stamp == known) return look;
    try {
      look.lists = readLists(store);
    } catch (const StoreError& error) {
      look.problem = error.what();
    }
    return look;
  };
  worker_.run(job, [this](std::optional<Look> look, const std::string& error) {
    watching_ = false;
    if (!look) return log_(error);
    if (look->lists) return takeChanged(std::move(*look->lists));
    if (look->problem.empty()) return;
    stamp_ = look->stamp;
    log_("not read anew: " + look->problem);
  });
}

}  // namespace kelvaron::server
