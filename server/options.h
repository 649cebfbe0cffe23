// The command line of the server program.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "server/server.h"

namespace kelvaron::server {

/// What the command line asks for. Its texts are in code page 1252.
struct CommandLine {
  bool help = false;
  bool version = false;
  bool check = false;
  bool bans = false;
  bool status = false;
  bool statusJson = false;
  std::optional<std::string> removedModerator;
  std::optional<std::string> unbanned;  // a nickname or an address
  struct NewModerator {
    std::string nick;
    std::string email;
  };
  std::optional<NewModerator> newModerator;
  struct NewBan {
    std::string who;  // a nickname or an address
    std::string reason;
    std::optional<std::chrono::sys_seconds> until;
  };
  std::optional<NewBan> newBan;
  std::filesystem::path log;  // empty: standard error
  Options options;            // its folder is empty when none was named
};

/// A command line that can't be understood; the text says why.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// `arguments` without the program's name. Throws `UsageError`.
CommandLine parseCommandLine(std::span<const char* const> arguments);

/// The text for `--help`.
std::string_view usage();

}  // namespace kelvaron::server
