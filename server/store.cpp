// The files of a server's folder, their line formats and their defaults.
#include "server/store.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "server/address.h"
#include "server/file.h"
#include "server/line.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr const char* kSettings = "settings";
constexpr const char* kReserved = "reserved";
constexpr const char* kModerators = "moderators";
constexpr const char* kBans = "bans";
constexpr const char* kMotd = "motd";

constexpr std::array<std::string_view, 3> kBanKinds = {"user", "nick", "address"};

bool isComment(std::string_view line) {
  return trimmed(line).empty() || line == "#" || line.starts_with("# ");
}

std::string defaultText(std::string_view file) {
  if (file == kSettings) return defaultSettingsText();
  if (file == kReserved)
    return "# Nicknames that nobody can log in with, one a line.\nQZN\nSorrel\nMessage\nPrivate\n"
           "Server\n";
  if (file == kModerators) {
    return "# Moderators: nickname, e-mail address and password hash, separated by TAB.\n"
           "# Add one with: kelvaron-server --add-moderator NAME EMAIL\n";
  }
  if (file == kBans) {
    return "# Bans: kind (user, nick or address), nickname, address, told address, by whom, reason,"
           "\n# separated by TAB. Take a ban away by removing its line.\n";
  }
  return "Welcome to Kelvaron.\n";
}

Moderator parseModerator(const std::string& line, std::size_t number) {
  const Fields fields = split(line);
  if (fields.size() != 3 || !isValidNick(fields[0]) || fields[1].empty() || fields[2].empty()) {
    throw StoreError(kModerators, number,
                     "a line must hold a nickname, an e-mail address and a password hash, "
                     "separated by TAB");
  }
  return {std::string(fields[0]), std::string(fields[1]), std::string(fields[2])};
}

Ban parseBan(const std::string& line, std::size_t number) {
  const Fields fields = split(line);
  const auto* kind = std::find(kBanKinds.begin(), kBanKinds.end(), fields[0]);
  if (fields.size() != 6 || kind == kBanKinds.end()) {
    throw StoreError(kBans, number,
                     "a line must hold user, nick or address, then a nickname, an address, a told "
                     "address, by whom and a reason, separated by TAB");
  }
  return {static_cast<BanKind>(kind - kBanKinds.begin()),
          std::string(fields[1]),
          std::string(fields[2]),
          std::string(fields[3]),
          std::string(fields[4]),
          std::string(fields[5])};
}

std::string banLine(const Ban& ban) {
  std::string line(kBanKinds[static_cast<std::size_t>(ban.kind)]);
  for (const std::string& field : {ban.nick, ban.address, ban.told, ban.by, ban.reason}) {
    line += '\t' + cleaned(field);
  }
  return line;
}

template <class Parse>
auto parseAll(const std::vector<std::string>& lines, Parse parse) {
  std::vector<decltype(parse(lines[0], 1))> entries;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!isComment(lines[i])) entries.push_back(parse(lines[i], i + 1));
  }
  return entries;
}

}  // namespace

bool Ban::keepsOut(std::string_view otherNick, std::string_view otherAddress) const {
  if (kind != BanKind::address && !nick.empty() && fold(nick) == fold(otherNick)) return true;
  return kind != BanKind::nick && !isLoopback(otherAddress) && !address.empty() &&
         sourceName(address) == sourceName(otherAddress);
}

void Store::prepare() const {
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  if (error) throw StoreError(folder_.string() + ": can't be created: " + error.message());
  for (const char* file : {kSettings, kReserved, kModerators, kBans, kMotd}) {
    if (!readFile(folder_ / file)) replaceFile(folder_ / file, defaultText(file));
  }
}

Settings Store::settings() const {
  return parseSettings(readFile(folder_ / kSettings).value_or(""));
}

std::vector<std::string> Store::reserved() const {
  return parseAll(lines(kReserved), [](const std::string& line, std::size_t number) {
    std::string nick(trimmed(line));
    if (!isValidNick(nick)) {
      throw StoreError(kReserved, number, "\"" + forLog(nick) + "\" can't be a nickname");
    }
    return nick;
  });
}

std::vector<Moderator> Store::moderators() const {
  return parseAll(lines(kModerators), parseModerator);
}

std::vector<Ban> Store::bans() const { return parseAll(lines(kBans), parseBan); }

std::string Store::motd() const {
  std::string joined;
  for (const std::string& line : lines(kMotd)) {
    if (trimmed(line).empty()) continue;
    if (!joined.empty()) joined += ' ';
    joined += cleaned(line);
  }
  return joined;
}

void Store::setModerator(const Moderator& moderator) const {
  const FolderLock lock(folder_);
  std::vector<std::string> kept = lines(kModerators);
  parseAll(kept, parseModerator);
  std::erase_if(kept, [&](const std::string& line) {
    return !isComment(line) && fold(split(line)[0]) == fold(moderator.nick);
  });
  kept.push_back(moderator.nick + '\t' + moderator.email + '\t' + moderator.hash);
  replace(kModerators, kept);
}

bool Store::removeModerator(std::string_view nick) const {
  const FolderLock lock(folder_);
  std::vector<std::string> kept = lines(kModerators);
  parseAll(kept, parseModerator);
  const auto removed = std::erase_if(kept, [&](const std::string& line) {
    return !isComment(line) && fold(split(line)[0]) == fold(nick);
  });
  if (removed > 0) replace(kModerators, kept);
  return removed > 0;
}

void Store::addBans(const std::vector<Ban>& bans) const {
  const FolderLock lock(folder_);
  std::vector<std::string> kept = lines(kBans);
  parseAll(kept, parseBan);
  for (const Ban& ban : bans) kept.push_back(banLine(ban));
  replace(kBans, kept);
}

std::size_t Store::removeBans(std::string_view nickOrAddress) const {
  const FolderLock lock(folder_);
  std::vector<std::string> kept = lines(kBans);
  parseAll(kept, parseBan);
  const auto removed = std::erase_if(kept, [&](const std::string& line) {
    if (isComment(line)) return false;
    const Ban ban = parseBan(line, 0);
    return fold(ban.nick) == fold(nickOrAddress) || ban.address == nickOrAddress;
  });
  if (removed > 0) replace(kBans, kept);
  return removed;
}

void Store::noteToldAddress(std::string_view nick, std::string_view told) const {
  const FolderLock lock(folder_);
  std::vector<std::string> kept = lines(kBans);
  for (std::size_t i = kept.size(); i-- > 0;) {
    if (isComment(kept[i])) continue;
    Ban ban = parseBan(kept[i], i + 1);
    if (fold(ban.nick) != fold(nick)) continue;
    ban.told = told;
    kept[i] = banLine(ban);
    replace(kBans, kept);
    return;
  }
}

Store::Stamp Store::stamp() const {
  const FileStamp moderators = fileStamp(folder_ / kModerators);
  const FileStamp bans = fileStamp(folder_ / kBans);
  return {{moderators.number, moderators.changed, bans.number, bans.changed}};
}

std::vector<std::string> Store::problems() const {
  std::error_code error;
  if (!std::filesystem::is_directory(folder_, error)) {
    return {folder_.string() + ": there is no such folder"};
  }
  std::vector<std::string> found;
  const auto look = [&](auto read) {
    try {
      (void)read();
    } catch (const StoreError& problem) {
      found.emplace_back(problem.what());
    }
  };
  look([&] { return settings(); });
  look([&] { return reserved(); });
  look([&] { return moderators(); });
  look([&] { return bans(); });
  look([&] { return motd(); });
  return found;
}

std::vector<std::string> Store::lines(const char* file) const {
  const std::string text = readFile(folder_ / file).value_or("");
  std::vector<std::string> result;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.pop_back();
    result.push_back(std::move(line));
    at = end + 1;
  }
  return result;
}

void Store::replace(const char* file, const std::vector<std::string>& lines) const {
  std::string text;
  for (const std::string& line : lines) text += line + '\n';
  replaceFile(folder_ / file, text);
}

}  // namespace kelvaron::server
