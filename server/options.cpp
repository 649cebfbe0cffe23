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

void setNewModerator(CommandLine& line, Values values) {
  const std::string_view email = trimmed(values[1]);
  if (!isValidNick(values[0])) {
    throw UsageError("a nickname has 1 to 15 characters, no blank, \"[\", \"]\" or \"\xC2\xA5\"");
  }
  if (email.empty() || cleaned(email) != email) throw UsageError("that is no e-mail address");
  line.newModerator = {values[0], std::string(email)};
}

void setHelp(CommandLine& line, Values /*values*/) { line.help = true; }

struct Option {
  std::string_view name;
  std::size_t values;
  void (*set)(CommandLine&, Values);
};

constexpr std::array kOptions = {
    Option{"--port", 1, setPort},     Option{"--address", 1, setAddress},
    Option{"--folder", 1, setFolder}, Option{"--add-moderator", 2, setNewModerator},
    Option{"--help", 0, setHelp},
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
         "       kelvaron-server --add-moderator NAME EMAIL [--folder DIR]\n"
         "\n"
         "The chat server of Kelvaron.\n"
         "\n"
         "  --port N        TCP port to listen on; 3069, where clients look, by default\n"
         "  --address A     numeric address to listen on; 0.0.0.0, all of this machine's, by\n"
         "                  default; \"::\" for IPv6 and IPv4\n"
         "  --folder DIR    where settings, moderators and bans are kept; \"server-data\" beside\n"
         "                  the program by default; made when it isn't there\n"
         "  --add-moderator NAME EMAIL\n"
         "                  makes NAME a moderator, or gives a new password; the password is the\n"
         "                  first line of standard input\n"
         "  --help          this text\n"
         "\n"
         "Signals: INT and TERM end the server, HUP reads the bans, the reserved nicknames and "
         "the\n"
         "message of the day anew. Exit codes: 0 done, 1 failed, 2 wrong usage.\n";
}

}  // namespace kelvaron::server
