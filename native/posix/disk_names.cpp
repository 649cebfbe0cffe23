#include "native/disk_names.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>

#include "base/code_page.h"
#include "native/bare_name.h"

namespace kelvaron {
namespace {

// Reading a folder through costs far more than asking for a name, and paths come from the network
// too.
constexpr int kMostFoldersRead = 32;

bool exists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

DiskName::Kind kindOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return DiskName::Kind::other;
  if (S_ISDIR(status.st_mode)) return DiskName::Kind::folder;
  if (!S_ISREG(status.st_mode)) return DiskName::Kind::other;
  return ::access(path.c_str(), X_OK) == 0 ? DiskName::Kind::program : DiskName::Kind::file;
}

}  // namespace

const char kFolderMark = '/';

std::string fileNameProblem(std::string_view name) {
  const bool oneFile = name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos &&
                       !name.empty() && name != "." && name != "..";
  return oneFile ? "" : "it is not the name of a file";
}

std::optional<DiskName> findOnDisk(std::string_view path) {
  const std::string wanted = withFolderMarks(path);
  if (wanted.size() >= PATH_MAX || wanted.find('\0') != std::string::npos) return std::nullopt;
  std::string found;
  int foldersRead = 0;
  for (std::size_t at = 0; at < wanted.size();) {
    if (wanted[at] == '/') {
      if (!found.ends_with('/')) found += '/';
      ++at;
      continue;
    }
    const std::size_t end = std::min(wanted.find('/', at), wanted.size());
    const std::string_view name = std::string_view(wanted).substr(at, end - at);
    at = end;
    // A folder may be closed to readers and still open to those who know a name in it.
    if (const std::string exact = found + toUtf8(name); exists(exact)) {
      found = exact;
      continue;
    }
    if (++foldersRead > kMostFoldersRead) return std::nullopt;
    const auto other = findByName(found.empty() ? "." : found, name);
    if (!other) return std::nullopt;
    found += other->filename().string();
  }
  // What ends in a slash has to be a folder, and what a link leads to has to be there.
  if (!exists(found)) return std::nullopt;
  return DiskName{found, kindOf(found)};
}

}  // namespace kelvaron
