// Paths as players type them, found on this system's disk: "\" parts folders like "/", and capitals
// don't matter.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvaron {

struct DiskName {
  enum class Kind { program, file, folder, other };

  /// As the disk spells it, in UTF-8; relative where the wanted path was.
  std::string path;
  /// `program` is a file that this user may execute. Links count as what they lead to.
  Kind kind = Kind::other;

  bool operator==(const DiskName&) const = default;
};

/// Looks a path of code page 1252 up, name by name, each as `findByName` finds it. None when there
/// is no such path, or when more than 32 of its names differ from the disk's.
std::optional<DiskName> findOnDisk(std::string_view path);

/// Why a name of code page 1252 can't be that of one file in a folder of this system, as the end of
/// a sentence; empty when it can.
std::string fileNameProblem(std::string_view name);

/// Whether a path begins with a drive, such as "C:\GAMES".
bool namesDrive(std::string_view path);

/// What parts folders on this system.
extern const char kFolderMark;
/// Each "/" and "\" as that.
std::string withFolderMarks(std::string_view path);

}  // namespace kelvaron
