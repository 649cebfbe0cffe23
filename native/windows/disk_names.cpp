#include "native/disk_names.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "base/code_page.h"
#include "native/paths.h"
#include "native/windows/long_path.h"

namespace kelvaron {
namespace {

namespace fs = std::filesystem;

// Longer paths can be made by no program but those that know how.
constexpr std::size_t kLongestPath = 4096;

/// Only what the system itself loads; the text of a batch file would reach a shell.
bool isProgram(const fs::path& path) {
  const std::string ending = upper(fromUtf8(utf8Of(path.extension())));
  return ending == ".EXE" || ending == ".COM";
}

}  // namespace

const char kFolderMark = '\\';

std::string fileNameProblem(std::string_view name) {
  constexpr std::array kDevices = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$", "CLOCK$"};
  constexpr std::string_view kMarks = R"(<>:"/\|?*)";
  const bool marked =
      name.find_first_of(kMarks) != std::string_view::npos || std::ranges::any_of(name, isControl);
  if (name.empty() || marked) return "it is not the name of a file";
  // The system would drop them, and write to the file of the name before.
  if (name.ends_with('.') || name.ends_with(' '))
    return "a name here can't end in a dot or a blank";
  // A device answers to its name whatever stands behind the first dot.
  std::string stem = upper(name.substr(0, name.find('.')));
  while (stem.ends_with(' ')) stem.pop_back();
  const bool numbered =
      stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
      std::string_view("0123456789\xB9\xB2\xB3").find(stem[3]) != std::string_view::npos;
  const bool device = numbered || std::ranges::find(kDevices, stem) != kDevices.end();
  return device ? "this system keeps the name for a device" : "";
}

// The system finds names whatever their capitals.
std::optional<DiskName> findOnDisk(std::string_view path) {
  if (path.empty() || path.size() >= kLongestPath || path.find('\0') != std::string_view::npos) {
    return std::nullopt;
  }
  const fs::path wanted = systemPath(toUtf8(withFolderMarks(path)));
  std::error_code failed;
  const fs::file_status status = fs::status(longPath(wanted), failed);
  if (failed || !fs::exists(status)) return std::nullopt;
  DiskName found{utf8Of(wanted), DiskName::Kind::other};
  if (fs::is_directory(status)) found.kind = DiskName::Kind::folder;
  // Devices such as CON answer in every folder.
  if (fs::is_regular_file(status)) {
    found.kind = isProgram(wanted) ? DiskName::Kind::program : DiskName::Kind::file;
  }
  return found;
}

}  // namespace kelvaron
