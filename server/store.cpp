// The files of a server's folder, their line formats and their defaults.
#include "server/store.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <system_error>
#include <utility>

#include "base/code_page.h"
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
    return "# Bans: kind (user, nick or address), nickname, address, told address, by whom, "
           "reason\n"
           "# and, if wanted, the end (2026-12-31T18:30, in UTC), separated by TAB.\n"
           "# Take a ban away by removing its line.\n";
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
  const bool ends = fields.size() == 7;
  if ((fields.size() != 6 && !ends) || kind == kBanKinds.end()) {
    throw StoreError(kBans, number,
                     "a line must hold user, nick or address, then a nickname, an address, a told "
                     "address, by whom, a reason and, if wanted, an end, separated by TAB");
  }
  const auto which = static_cast<BanKind>(kind - kBanKinds.begin());
  if (which == BanKind::nick && trimmed(fields[1]).empty()) {
    throw StoreError(kBans, number, "a ban of a nickname needs one");
  }
  if (which == BanKind::address && !isAddress(fields[2])) {
    throw StoreError(kBans, number, "a ban of an address needs one, and knows no networks");
  }
  const auto until = ends ? parseTime(fields[6]) : std::nullopt;
  if (ends && !until) {
    throw StoreError(kBans, number, "the end must read as 2026-12-31 or 2026-12-31T18:30, in UTC");
  }
  return {which,
          std::string(fields[1]),
          std::string(fields[2]),
          std::string(fields[3]),
          std::string(fields[4]),
          std::string(fields[5]),
          until};
}

std::string banLine(const Ban& ban) {
  std::string line(kBanKinds[static_cast<std::size_t>(ban.kind)]);
  for (const std::string& field : {ban.nick, ban.address, ban.told, ban.by, ban.reason}) {
    line += '\t' + cleaned(field);
  }
  if (ban.until) line += '\t' + timeText(*ban.until);
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

std::string parseReserved(const std::string& line, std::size_t number) {
  std::string nick(trimmed(line));
  if (!isValidNick(nick)) {
    throw StoreError(kReserved, number, "\"" + forLog(nick) + "\" can't be a nickname");
  }
  return nick;
}

std::string parseMotd(const std::string& line, std::size_t number) {
  const auto isText = [](char c) { return c == '\t' || !isControl(c); };
  if (!std::ranges::all_of(line, isText) || isUtf8(line)) {
    throw StoreError(kMotd, number,
                     "holds characters that are not in code page 1252, such as those of UTF-8");
  }
  return line;
}

bool isBlank(std::string_view line) { return trimmed(line).empty(); }

/// Gathers what is thrown, so that one fault hides no other.
struct Problems {
  template <class Read>
  void look(Read read) {
    try {
      (void)read();
    } catch (const StoreError& problem) {
      texts.emplace_back(problem.what());
    }
  }

  template <class Lines, class IsLeftOut, class Parse>
  void lookAtLines(Lines lines, IsLeftOut isLeftOut, Parse parse) {
    std::vector<std::string> all;
    look([&] { return all = lines(); });
    for (std::size_t i = 0; i < all.size(); ++i) {
      if (!isLeftOut(all[i])) look([&] { return parse(all[i], i + 1), 0; });
    }
  }

  std::vector<std::string> texts{};
};

}  // namespace

std::optional<std::chrono::sys_seconds> parseTime(std::string_view text) {
  std::istringstream in{std::string(text)};
  std::tm time{};
  in >> std::get_time(&time,
                      text.find('T') == std::string_view::npos ? "%Y-%m-%d" : "%Y-%m-%dT%H:%M");
  if (!in || in.peek() != std::istringstream::traits_type::eof()) return std::nullopt;
  const int day = time.tm_mday;
  const std::chrono::sys_seconds read(std::chrono::seconds(::timegm(&time)));
  // A 31st of February has become one of March.
  return time.tm_mday == day ? std::optional(read) : std::nullopt;
}

std::string timeText(std::chrono::sys_seconds time) {
  const std::time_t number = time.time_since_epoch().count();
  std::tm parts{};
  ::gmtime_r(&number, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M", &parts)};
}

std::string Ban::who() const {
  std::string text;
  if (kind != BanKind::address) text += nick;
  if (kind == BanKind::user) text += ' ';
  if (kind != BanKind::nick) text += address;
  return text;
}

bool Ban::keepsOut(std::string_view otherNick, std::string_view otherAddress) const {
  // In seconds, as nanoseconds end in the year 2262.
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  if (until && *until <= now) return false;
  if (kind != BanKind::address && !nick.empty() && fold(nick) == fold(otherNick)) return true;
  return kind != BanKind::nick && !isLoopback(otherAddress) && !address.empty() &&
         sourceName(address) == sourceName(otherAddress);
}

bool Ban::isSameAs(const Ban& other) const {
  Ban same = other;
  same.told = told;
  return *this == same;
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
  return parseAll(lines(kReserved), parseReserved);
}

std::vector<Moderator> Store::moderators() const {
  return parseAll(lines(kModerators), parseModerator);
}

std::vector<Ban> Store::bans() const { return parseAll(lines(kBans), parseBan); }

std::string Store::motd() const {
  std::string joined;
  for (const std::string& line : lines(kMotd)) {
    if (isBlank(line)) continue;
    if (!joined.empty()) joined += '\n';
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
    return fold(ban.nick) == fold(nickOrAddress) ||
           (!ban.address.empty() && sourceName(ban.address) == sourceName(nickOrAddress));
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
  Problems found;
  found.lookAtLines([this] { return lines(kSettings); }, isBlank,
                    [](const std::string& line, std::size_t number) {
                      Settings ignored;
                      parseSetting(line, number, ignored);
                    });
  found.lookAtLines([this] { return lines(kReserved); }, isComment, parseReserved);
  found.lookAtLines([this] { return lines(kModerators); }, isComment, parseModerator);
  found.lookAtLines([this] { return lines(kBans); }, isComment, parseBan);
  std::ranges::move(motdProblems(), std::back_inserter(found.texts));
  return std::move(found.texts);
}

std::vector<std::string> Store::motdProblems() const {
  Problems found;
  found.lookAtLines([this] { return lines(kMotd); }, isBlank, parseMotd);
  return std::move(found.texts);
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
