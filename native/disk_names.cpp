#include "native/disk_names.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "platform/text.h"

namespace kelvaron {
namespace {

namespace fs = std::filesystem;

bool exists(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0;
}

/// The name in `folder` that differs from `wanted` in case alone.
std::optional<std::string> anyCase(const std::string& folder, std::string_view wanted) {
  const std::string key = lower(wanted);
  std::optional<std::string> best;
  // A folder that can't be read holds nothing that could be found.
  std::error_code unreadable;
  fs::directory_iterator entry(folder.empty() ? "." : folder, unreadable);
  for (; !unreadable && entry != fs::directory_iterator(); entry.increment(unreadable)) {
    const std::string name = entry->path().filename().string();
    const std::string coded = fromUtf8(name);
    // A name with characters outside the code page is none that could have been typed.
    if (lower(coded) != key || toUtf8(coded) != name) continue;
    if (!best || name < *best) best = name;
  }
  return best;
}

DiskName::Kind kindOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return DiskName::Kind::other;
  if (S_ISDIR(status.st_mode)) return DiskName::Kind::folder;
  if (!S_ISREG(status.st_mode)) return DiskName::Kind::other;
  return ::access(path.c_str(), X_OK) == 0 ? DiskName::Kind::program : DiskName::Kind::file;
}

}  // namespace

std::string withSlashes(std::string_view path) {
  std::string result(path);
  std::ranges::replace(result, '\\', '/');
  return result;
}

bool namesDrive(std::string_view path) {
  if (path.size() < 2 || path[1] != ':') return false;
  const std::string letter = upper(path.substr(0, 1));
  const bool parted = path.size() == 2 || path[2] == '\\' || path[2] == '/';
  return letter[0] >= 'A' && letter[0] <= 'Z' && parted;
}

std::optional<DiskName> findOnDisk(std::string_view path) {
  const std::string wanted = withSlashes(path);
  if (wanted.empty() || wanted.find('\0') != std::string::npos) return std::nullopt;
  std::string found;
  for (std::size_t at = 0; at < wanted.size();) {
    if (wanted[at] == '/') {
      if (!found.ends_with('/')) found += '/';
      ++at;
      continue;
    }
    const std::size_t end = std::min(wanted.find('/', at), wanted.size());
    const std::string_view name = std::string_view(wanted).substr(at, end - at);
    at = end;
    const std::string exact = found + toUtf8(name);
    if (exists(exact)) {
      found = exact;
    } else if (const auto other = anyCase(found, name)) {
      found += *other;
    } else {
      return std::nullopt;
    }
  }
  // What ends in a slash has to be a folder.
  if (!exists(found)) return std::nullopt;
  return DiskName{found, kindOf(found)};
}

}  // namespace kelvaron
