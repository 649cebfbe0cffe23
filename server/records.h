// What the folder holds, in memory: no line of a client waits for the disk. The worker keeps both
// in step.
#pragma once

#include <asio/io_context.hpp>
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "server/clock.h"
#include "server/log.h"
#include "server/store.h"
#include "server/worker.h"

namespace kelvaron::server {

class Records {
 public:
  /// Throws `StoreError` when a file of the store can't be read.
  Records(asio::io_context& io, Store store, Log log);

  /// Whether it looks like a reserved nickname.
  bool isReserved(std::string_view nick) const;
  bool isBanned(std::string_view nick, std::string_view address) const;
  /// The message of the day; empty for none.
  const std::string& motd() const { return motd_; }
  /// The registered moderator of that nickname, or nothing; only until the next turn of the loop.
  const Moderator* moderator(std::string_view nick) const;

  /// The ban counts at once. `failed` is called when it can't be stored at first; storing it is
  /// tried again every ten seconds until it is.
  void addBan(const Ban& ban, std::function<void()> failed);
  /// Notes the address that a banned client told, in the last ban of that nickname.
  void noteToldAddress(std::string_view nick, std::string_view told);

  /// A ban that somebody else has added to the file; called on the loop.
  std::function<void(const Ban&)> onNewBan;
  /// Whether the bans of the last tries are on the disk.
  bool areStored() const { return !storeFailed_; }

  /// Reads all anew; the settings go to `taken`. A file that can't be read is told to the log, and
  /// all stay as they were.
  void reload(std::function<void(const Settings&)> taken);
  /// Looks twice a second whether another program has changed moderators or bans, and stores what
  /// couldn't be. Called every so often.
  void sweep(Clock::time_point now);

 private:
  /// What is read at the start and when asked for.
  struct Fixed {
    std::vector<std::string> reserved;
    std::string motd;
    std::vector<std::string> motdProblems;
    Settings settings;
  };
  /// What commands change while the server runs.
  struct Lists {
    Store::Stamp stamp;
    std::vector<Moderator> moderators;
    std::vector<Ban> bans;
  };

  static Fixed readFixed(const Store& store);
  static Lists readLists(const Store& store);
  void take(Fixed fixed);
  void take(Lists lists);
  /// As `take`; the log is told what is new.
  void takeChanged(Lists lists);
  void tellChanges(const Lists& lists) const;
  void watch();
  void storeBans();

  Store store_;
  Log log_;
  std::vector<std::string> reserved_;
  std::map<std::string, Moderator> moderators_;  // by folded nickname
  std::vector<Ban> bans_;
  std::string motd_;
  Store::Stamp stamp_;
  Clock::time_point watchAt_{};
  bool watching_ = false;

  // In memory only so far.
  std::vector<Ban> unstored_;
  std::vector<std::function<void()>> failed_;  // to be told at the first failure
  bool storing_ = false;
  bool storeFailed_ = false;
  Clock::time_point storeAt_{};

  Worker worker_;
};

}  // namespace kelvaron::server
