// Reading the command line: a table of what each option sets.
#include "server/options.h"

#include <algorithm>
#include <array>
#include <asio/ip/address.hpp>
#include <charconv>

#include "server/address.h"
#include "server/store.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

using Values = std::span<const char* const>;

void setPort(CommandLine& line, Values values) {
  const std::string_view digits = values[0];
  const auto* end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, line.options.port);
  if (read.ec != std::errc() || read.ptr != end) {
    throw UsageError("a port is a number from 0 to 65535, not \"" + std::string(digits) + "\"");
  }
}

void setAddress(CommandLine& line, Values values) {
  std::error_code error;
  asio::ip::make_address(values[0], error);
  if (error) throw UsageError("\"" + std::string(values[0]) + "\" is not a numeric address");
  line.options.address = values[0];
}

void setFolder(CommandLine& line, Values values) {
  if (std::string_view(values[0]).empty()) throw UsageError("the folder's name is empty");
  line.options.folder = values[0];
}

std::string textOf(const char* argument) {
  if (auto text = fromConsole(argument)) return *text;
  throw UsageError('"' + std::string(argument) +
                   "\" holds a character that is not in code page 1252");
}

void setNewModerator(CommandLine& line, Values values) {
  const std::string nick = textOf(values[0]);
  const std::string address = textOf(values[1]);
  const std::string_view email = trimmed(address);
  if (!isValidNick(nick)) {
    throw UsageError("a nickname has 1 to 15 characters, no blank, \"[\", \"]\" or \"\xC2\xA5\"");
  }
  if (email.empty() || cleaned(email) != email) throw UsageError("that is no e-mail address");
  line.newModerator = {nick, std::string(email)};
}

void setRemovedModerator(CommandLine& line, Values values) {
  line.removedModerator = textOf(values[0]);
}
void setNewBan(CommandLine& line, Values values) {
  line.newBan = {.who = textOf(values[0]), .reason = cleaned(textOf(values[1])), .until = {}};
  const std::string& who = line.newBan->who;
  const std::string quoted = '"' + std::string(values[0]) + '"';
  const bool address = isAddress(who);
  if (address && isLoopback(who)) {
    throw UsageError(quoted + " is this machine itself, which no ban keeps out");
  }
  // A nickname could be written so, but it's hardly meant.
  if (!address && who.find_first_of(".:/") != std::string::npos &&
      who.find_first_not_of("0123456789.:/") == std::string::npos) {
    throw UsageError(quoted + " is no address of one machine");
  }
  if (!address && !isValidNick(who)) {
    throw UsageError(quoted + " is neither a nickname nor an address");
  }
}
void setUntil(CommandLine& line, Values values) {
  const auto time = parseTime(values[0]);
  if (!time || !line.newBan) {
    throw UsageError("--until, behind --ban, reads as 2026-12-31 or 2026-12-31T18:30, in UTC");
  }
  // In seconds, as nanoseconds end in the year 2262.
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  if (*time <= now) throw UsageError("--until is over already");
  line.newBan->until = time;
}
void setLog(CommandLine& line, Values values) { line.log = values[0]; }
void setStatusJson(CommandLine& line, Values /*values*/) { line.status = line.statusJson = true; }
void setUnbanned(CommandLine& line, Values values) { line.unbanned = textOf(values[0]); }

template <bool CommandLine::*Flag>
void setFlag(CommandLine& line, Values /*values*/) {
  line.*Flag = true;
}

struct Option {
  std::string_view name;
  std::size_t values;
  void (*set)(CommandLine&, Values);
};

constexpr std::array kOptions = {
    Option{"--port", 1, setPort},
    Option{"--address", 1, setAddress},
    Option{"--folder", 1, setFolder},
    Option{"--add-moderator", 2, setNewModerator},
    Option{"--remove-moderator", 1, setRemovedModerator},
    Option{"--ban", 2, setNewBan},
    Option{"--until", 1, setUntil},
    Option{"--bans", 0, setFlag<&CommandLine::bans>},
    Option{"--unban", 1, setUnbanned},
    Option{"--status", 0, setFlag<&CommandLine::status>},
    Option{"--status=json", 0, setStatusJson},
    Option{"--log", 1, setLog},
    Option{"--check", 0, setFlag<&CommandLine::check>},
    Option{"--version", 0, setFlag<&CommandLine::version>},
    Option{"--help", 0, setFlag<&CommandLine::help>},
};

}  // namespace

CommandLine parseCommandLine(std::span<const char* const> arguments) {
  CommandLine line;
  while (!arguments.empty()) {
    const std::string_view name = arguments.front();
    arguments = arguments.subspan(1);
    const auto* option = std::find_if(kOptions.begin(), kOptions.end(),
                                      [&](const Option& each) { return each.name == name; });
    if (option == kOptions.end()) throw UsageError("unknown option \"" + std::string(name) + "\"");
    if (arguments.size() < option->values) {
      throw UsageError(std::string(name) + " needs " +
                       (option->values == 1 ? "a value"
                        : name == "--ban"   ? "a nickname or an address, and a reason"
                                            : "a nickname and an e-mail address"));
    }
    option->set(line, arguments.first(option->values));
    arguments = arguments.subspan(option->values);
  }
  return line;
}

std::string_view usage() {
  return "Usage: kelvaron-server [--port N] [--address A] [--folder DIR]\n"
         "       kelvaron-server COMMAND [--folder DIR]\n"
         "\n"
         "The chat server of Kelvaron.\n"
         "\n"
         "  --port N        TCP port to listen on; 3069, where clients look, by default\n"
         "  --address A     numeric address to listen on; 0.0.0.0, all of this machine's, by\n"
         "                  default; \"::\" for IPv6 and IPv4\n"
         "  --folder DIR    where settings, moderators and bans are kept; made when it isn't "
         "there;\n"
         "                  by default the service's folder for an installed program, else\n"
         "                  \"server-data\" beside it\n"
         "  --log FILE      where the log goes, instead of standard error\n"
         "\n"
         "Commands, which may be given while a server runs on the folder:\n"
         "  --add-moderator NAME EMAIL\n"
         "                  makes NAME a moderator, or gives a new password; the password is the\n"
         "                  first line of standard input\n"
         "  --remove-moderator NAME\n"
         "                  takes it back\n"
         "  --ban WHO REASON [--until TIME]\n"
         "                  bans a nickname or an address, for ever or until 2026-12-31 or\n"
         "                  2026-12-31T18:30, in UTC; who is in the room is dropped\n"
         "  --bans          lists the bans\n"
         "  --unban WHO     takes away the bans of a nickname or of an address\n"
         "  --status        tells how the server is that runs on the folder, --status=json for a\n"
         "                  program; the exit code is 1 when it isn't well or doesn't run\n"
         "  --check         reads the folder and says what is wrong with it\n"
         "  --version       the version\n"
         "  --help          this text\n"
         "\n"
         "Signals: INT and TERM end the server, once the room has been told; HUP reads the files "
         "of\n"
         "the folder anew and opens the file of the log anew; USR1 writes a line of statistics to "
         "the log.\n"
         "Exit codes: 0 done, 1 failed, 2 wrong usage.\n";
}

}  // namespace kelvaron::server
