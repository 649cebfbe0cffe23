// Where the client keeps what it writes, and where what it came with lies. The one place that
// decides it.
#pragma once

#include <filesystem>
#include <string>

namespace kelvaron {

struct ProgramFolders {
  /// What the core knows as the program's folder: settings, profile, received files, demos, and
  /// sounds of the user's own.
  std::filesystem::path own;
  /// Where the sounds that it came with lie: installed, or in the program's folder.
  std::filesystem::path installed;
  /// Where the adapters of engines lie; may not be there.
  std::filesystem::path engines;
  /// Why `own` can't be used, as a sentence in UTF-8; empty when it can.
  std::string problem;
};

/// A program whose folder its user can write to, and that wasn't installed, works in that folder.
/// Else it works in `kelvaron` under the user's data folder of the desktop (XDG base directories:
/// `dataHome`, the value of XDG_DATA_HOME, if it is absolute, else `.local/share` under `home`),
/// which is made when it is missing, for its user alone. `program` is the folder of the program's
/// file.
ProgramFolders programFolders(const std::filesystem::path& program, const std::string& dataHome,
                              const std::string& home);

}  // namespace kelvaron
