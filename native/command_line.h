// Tokenizing a command line into a program and its arguments, as this system wants them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "native/disk_names.h"

namespace kelvaron {

struct CommandLine {
  /// The program's location as it was typed, in code page 1252; empty when there is none.
  std::string location;
  /// What the disk holds there.
  std::optional<DiskName> program;
  /// In UTF-8.
  std::vector<std::string> arguments;
};

/// Blanks part the words, and nothing else has a meaning: no quotes, no signs of a shell. The line
/// end at the end of a word is dropped. Paths may hold blanks: the location, and what stands behind
/// "-iwad", "-file" and "-record", is tried against the disk as longer and longer (for "-record",
/// where only the folder has to be there, shorter and shorter) joins of words, up to 32 of them;
/// words that look like switches are a part of the path when the disk says so. A path that is found
/// is given as the disk spells it. One that isn't found stays cut, with "/" for each "\"; other
/// arguments stay as they are. After 128 look-ups nothing more of the text is looked up.
CommandLine tokenize(std::string_view command);

/// Why a command can't be started, as the end of a sentence that begins with the program's location
/// ("was not found"). Empty when nothing speaks against it.
std::string startProblem(const CommandLine& command);

}  // namespace kelvaron
