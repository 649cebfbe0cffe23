// Starting a program: no shell, nothing of this process's but its output.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kelvaron {

struct ProgramStart {
  /// Where the program lies.
  std::string path;
  /// Behind the program's own name, in UTF-8.
  std::vector<std::string> arguments;
  /// Where output and errors go: an open descriptor above the standard three, or a device's path.
  std::variant<int, std::string> output;
  /// "NAME=value"; this process's own environment where there is none.
  std::optional<std::vector<std::string>> environment;
};

/// Starts a program in a session of its own, with no input, no other descriptor of this process and
/// with the signals as a new program expects them. Zero, or an errno value where it did not start.
int spawn(pid_t& process, const ProgramStart& start);

}  // namespace kelvaron
