// The folder of plain files in which a server keeps what outlives it.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "server/settings.h"
#include "server/store_error.h"

namespace kelvaron::server {

struct Moderator {
  std::string nick;
  std::string email;
  std::string hash;  // see password.h
};

/// What a ban keeps out: users of a nickname, an address, or both.
enum class BanKind { user, nick, address };

struct Ban {
  BanKind kind = BanKind::user;
  std::string nick{};
  std::string address{};  // as the server saw it
  std::string told{};     // as the client told it; a note only, since many users have the same one
  std::string by{};
  std::string reason{};
  std::optional<std::chrono::sys_seconds> until{};  // for ever without

  /// Whether it keeps that user out now. Nicknames are compared without regard to case. Addresses
  /// of this machine are never banned, so that a lobby on one machine stays open.
  bool keepsOut(std::string_view otherNick, std::string_view otherAddress) const;
  /// Whom it keeps out, in the code page: "bob 10.1.1.1".
  std::string who() const;
  /// Whether they are the same but for the told address, which may be noted later.
  bool isSameAs(const Ban& other) const;
  bool operator==(const Ban&) const = default;
};

/// From "2026-12-31" or "2026-12-31T18:30", in UTC; nothing for another text.
std::optional<std::chrono::sys_seconds> parseTime(std::string_view text);
std::string timeText(std::chrono::sys_seconds time);

/// Every function reads or replaces a file of the folder anew and throws `StoreError`. Lines that
/// are empty or begin with "# " are comments, and stay when a file is changed. Changes by several
/// programs wait for each other; within one program it is for one thread at a time.
class Store {
 public:
  explicit Store(std::filesystem::path folder) : folder_(std::move(folder)) {}

  /// Makes the folder and each missing file with its defaults.
  void prepare() const;

  Settings settings() const;
  /// Nicknames that nobody may log in with.
  std::vector<std::string> reserved() const;
  std::vector<Moderator> moderators() const;
  std::vector<Ban> bans() const;
  /// The message of the day on one line, its lines joined by blanks; empty for none.
  std::string motd() const;

  /// Adds a moderator, or replaces the one of that nickname.
  void setModerator(const Moderator& moderator) const;
  /// Takes a moderator away; whether there was one of that nickname.
  bool removeModerator(std::string_view nick) const;
  void addBans(const std::vector<Ban>& bans) const;
  /// Takes away all bans of a nickname, or of an address; how many there were.
  std::size_t removeBans(std::string_view nickOrAddress) const;
  /// Notes the address that a banned client told, in the last ban of that nickname.
  void noteToldAddress(std::string_view nick, std::string_view told) const;

  /// What tells a change of the moderators' and the bans' file by anybody from what was there.
  struct Stamp {
    std::array<std::int64_t, 4> values{};
    bool operator==(const Stamp&) const = default;
  };
  Stamp stamp() const;

  /// All that is wrong with the folder and its files, one text a fault in the order of the lines;
  /// changes and makes nothing.
  std::vector<std::string> problems() const;
  /// Those of the message of the day, which is shown all the same.
  std::vector<std::string> motdProblems() const;

  const std::filesystem::path& folder() const { return folder_; }

 private:
  std::vector<std::string> lines(const char* file) const;
  void replace(const char* file, const std::vector<std::string>& lines) const;

  std::filesystem::path folder_;
};

}  // namespace kelvaron::server
