// One table of the settings: reading them and writing the default file both go by it.
#include "server/settings.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "server/store_error.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

struct Setting {
  std::string_view key;
  long Settings::*value;
  long least;
  long most;
  std::string_view comment;
};

constexpr long kDay = 86'400'000;

constexpr auto kAllSettings = std::to_array<Setting>({
    {"login_timeout_ms", &Settings::loginTimeoutMs, 10, kDay,
     "a connection that has told no nickname by then is closed"},
    {"leave_grace_ms", &Settings::leaveGraceMs, 0, kDay,
     "how long a refused, kicked or banned client may take to close by itself"},
    {"stall_timeout_ms", &Settings::stallTimeoutMs, 10, kDay,
     "a client that takes none of what waits for it this long is dropped"},
    {"address_answer_ms", &Settings::addressAnswerMs, 0, kDay,
     "how long a moderator waits for a client to tell its address"},
    {"list_delay_ms", &Settings::listDelayMs, 0, 60'000,
     "changes of the user list within this time go out as one list"},
    {"accept_pause_ms", &Settings::acceptPauseMs, 1, 60'000,
     "pause before the next try when the system gives no more connections"},
    {"line_limit", &Settings::lineLimit, 256, 16'777'216,
     "bytes in a line from a client; a longer one drops the client"},
    {"queue_limit", &Settings::queueLimit, 4'096, 1'073'741'824,
     "bytes that may wait for a client that doesn't read, with what keeping them costs (user "
     "lists don't count)"},
    {"memory_limit", &Settings::memoryLimit, 1'048'576, 1'099'511'627'776,
     "bytes that may wait for all clients together, what many share counted once; above it the "
     "clients with the most are dropped"},
    {"burst_lines", &Settings::burstLines, 1, 1'000'000,
     "lines that may come from one address at once before it is slowed down; a long line counts "
     "once more for each KiB, a change of one's state four times more"},
    {"lines_per_second", &Settings::linesPerSecond, 1, 1'000'000,
     "lines a second that may come from one address from then on"},
    {"burst_logins", &Settings::burstLogins, 1, 1'000'000,
     "logins from one address at once before they have to wait"},
    {"logins_per_minute", &Settings::loginsPerMinute, 1, 1'000'000,
     "logins a minute from one address from then on"},
    {"local_times", &Settings::localTimes, 1, 1'000'000,
     "this machine's own addresses may send and log in so many times as much in all, as a "
     "tunnel's clients all come from there; each of their connections has what an address has"},
    {"list_bytes_per_second", &Settings::listBytesPerSecond, 1'024, 1'073'741'824,
     "bytes of user lists a second for each client; changes are gathered while they are spent"},
    {"connections", &Settings::connections, 1, 1'000'000, "connections in all"},
    {"connections_per_address", &Settings::connectionsPerAddress, 1, 1'000'000,
     "connections from one address; this machine's own addresses have no such limit"},
    {"proofs_per_connection", &Settings::proofsPerConnection, 1, 1'000,
     "wrong passwords of a moderator on one connection; more are not looked at"},
    {"proofs_per_address", &Settings::proofsPerAddress, 1, 1'000'000,
     "wrong passwords of a moderator from one address within ten minutes"},
    {"proofs_per_account", &Settings::proofsPerAccount, 1, 1'000'000,
     "wrong passwords for one moderator within ten minutes; from then on an address has one try, "
     "and none when one of these came from there"},
    {"moderator_proof_ms", &Settings::moderatorProofMs, 0, kDay,
     "how long a moderator's nickname may be used without the password; 0: for ever"},
});

void readEntry(std::string_view line, std::size_t number, Settings& settings) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) {
    throw StoreError("settings", number, "a line must read: key = value");
  }
  const std::string_view key = trimmed(line.substr(0, equals));
  const std::string_view digits = trimmed(line.substr(equals + 1));
  const auto* entry = std::ranges::find(kAllSettings, key, &Setting::key);
  if (entry == kAllSettings.end()) {
    throw StoreError("settings", number, "there is no setting \"" + forLog(key) + "\"");
  }
  long value = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ec != std::errc() || read.ptr != digits.data() + digits.size() || value < entry->least ||
      value > entry->most) {
    throw StoreError("settings", number,
                     std::string(key) + " must be a number from " + std::to_string(entry->least) +
                         " to " + std::to_string(entry->most));
  }
  settings.*entry->value = value;
}

}  // namespace

void parseSetting(std::string_view line, std::size_t number, Settings& settings) {
  const std::string text = cleaned(line);
  const std::string_view content = trimmed(text);
  if (!content.empty() && content.front() != '#') readEntry(content, number, settings);
}

Settings parseSettings(std::string_view text) {
  Settings settings;
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    parseSetting(text.substr(0, end), number, settings);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return settings;
}

std::string defaultSettingsText() {
  const Settings defaults;
  std::string text = "# Limits and time-outs of the Kelvaron server. Times are in milliseconds.\n";
  for (const Setting& entry : kAllSettings) {
    text += "\n# ";
    text += entry.comment;
    text += '\n';
    text += entry.key;
    text += " = " + std::to_string(defaults.*entry.value) + '\n';
  }
  return text;
}

}  // namespace kelvaron::server
