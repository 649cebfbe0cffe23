// Reading the command line: a table of what each option sets.
#include "server/options.h"

#include <algorithm>
#include <array>
#include <asio/ip/address.hpp>
#include <charconv>

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
    Option{"--bans", 0, setFlag<&CommandLine::bans>},
    Option{"--unban", 1, setUnbanned},
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
                       (option->values == 1 ? "a value" : "a nickname and an e-mail address"));
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
         "  --folder DIR    where settings, moderators and bans are kept; \"server-data\" beside\n"
         "                  the program by default; made when it isn't there\n"
         "\n"
         "Commands, which may be given while a server runs on the folder:\n"
         "  --add-moderator NAME EMAIL\n"
         "                  makes NAME a moderator, or gives a new password; the password is the\n"
         "                  first line of standard input\n"
         "  --remove-moderator NAME\n"
         "                  takes it back\n"
         "  --bans          lists the bans\n"
         "  --unban WHO     takes away the bans of a nickname or of an address\n"
         "  --check         reads the folder and says what is wrong with it\n"
         "  --version       the version\n"
         "  --help          this text\n"
         "\n"
         "Signals: INT and TERM end the server, once the room has been told; HUP reads the files "
         "of\n"
         "the folder anew; USR1 writes a line of statistics to the log.\n"
         "Exit codes: 0 done, 1 failed, 2 wrong usage.\n";
}

}  // namespace kelvaron::server
