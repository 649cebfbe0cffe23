// The files of a server's folder, their line formats and their defaults.
#include "server/store.h"

#include <algorithm>
#include <array>
#include <system_error>

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

bool is_comment(std::string_view line) {
  return trimmed(line).empty() || line == "#" || line.starts_with("# ");
}

std::string default_text(std::string_view file) {
  if (file == kSettings) return default_settings_text();
  if (file == kReserved)
    return "# Nicknames that nobody can log in with, one a line.\nQZN\nSorrel\n";
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

Moderator parse_moderator(const std::string& line, std::size_t number) {
  const Fields fields = split(line);
  if (fields.size() != 3 || !is_valid_nick(fields[0]) || fields[1].empty() || fields[2].empty()) {
    throw StoreError(kModerators, number,
                     "a line must hold a nickname, an e-mail address and a password hash, "
                     "separated by TAB");
  }
  return {std::string(fields[0]), std::string(fields[1]), std::string(fields[2])};
}

Ban parse_ban(const std::string& line, std::size_t number) {
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

std::string ban_line(const Ban& ban) {
  std::string line(kBanKinds[static_cast<std::size_t>(ban.kind)]);
  for (const std::string& field : {ban.nick, ban.address, ban.told, ban.by, ban.reason}) {
    line += '\t' + cleaned(field);
  }
  return line;
}

template <class Parse>
auto parse_all(const std::vector<std::string>& lines, Parse parse) {
  std::vector<decltype(parse(lines[0], 1))> entries;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!is_comment(lines[i])) entries.push_back(parse(lines[i], i + 1));
  }
  return entries;
}

}  // namespace

bool is_loopback(std::string_view address) {
  return address.starts_with("127.") || address == "::1";
}

bool Ban::keeps_out(std::string_view other_nick, std::string_view other_address) const {
  if (kind != BanKind::kAddress && !nick.empty() && fold(nick) == fold(other_nick)) return true;
  return kind != BanKind::kNick && address == other_address && !is_loopback(other_address);
}

void Store::prepare() const {
  std::error_code error;
  std::filesystem::create_directories(folder_, error);
  if (error) throw StoreError(folder_.string() + ": can't be created: " + error.message());
  for (const char* file : {kSettings, kReserved, kModerators, kBans, kMotd}) {
    if (!read_file(folder_ / file)) replace_file(folder_ / file, default_text(file));
  }
}

Settings Store::settings() const {
  return parse_settings(read_file(folder_ / kSettings).value_or(""));
}

std::vector<std::string> Store::reserved() const {
  return parse_all(lines(kReserved), [](const std::string& line, std::size_t number) {
    std::string nick(trimmed(line));
    if (!is_valid_nick(nick)) {
      throw StoreError(kReserved, number, "\"" + nick + "\" can't be a nickname");
    }
    return nick;
  });
}

std::vector<Moderator> Store::moderators() const {
  return parse_all(lines(kModerators), parse_moderator);
}

std::vector<Ban> Store::bans() const { return parse_all(lines(kBans), parse_ban); }

std::string Store::motd() const {
  std::string joined;
  for (const std::string& line : lines(kMotd)) {
    if (trimmed(line).empty()) continue;
    if (!joined.empty()) joined += ' ';
    joined += cleaned(line);
  }
  return joined;
}

void Store::set_moderator(const Moderator& moderator) const {
  std::vector<std::string> kept = lines(kModerators);
  parse_all(kept, parse_moderator);
  std::erase_if(kept, [&](const std::string& line) {
    return !is_comment(line) && fold(split(line)[0]) == fold(moderator.nick);
  });
  kept.push_back(moderator.nick + '\t' + moderator.email + '\t' + moderator.hash);
  replace(kModerators, kept);
}

void Store::add_ban(const Ban& ban) const {
  std::vector<std::string> kept = lines(kBans);
  parse_all(kept, parse_ban);
  kept.push_back(ban_line(ban));
  replace(kBans, kept);
}

void Store::note_told_address(std::string_view nick, std::string_view told) const {
  std::vector<std::string> kept = lines(kBans);
  for (std::size_t i = kept.size(); i-- > 0;) {
    if (is_comment(kept[i])) continue;
    Ban ban = parse_ban(kept[i], i + 1);
    if (fold(ban.nick) != fold(nick)) continue;
    ban.told = told;
    kept[i] = ban_line(ban);
    replace(kBans, kept);
    return;
  }
}

std::vector<std::string> Store::lines(const char* file) const {
  const std::string text = read_file(folder_ / file).value_or("");
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
  replace_file(folder_ / file, text);
}

}  // namespace kelvaron::server
