#include "native/disk_names.h"

#include <algorithm>

#include "base/code_page.h"

namespace kelvaron {

std::string withFolderMarks(std::string_view path) {
  std::string result(path);
  std::ranges::replace(result, kFolderMark == '/' ? '\\' : '/', kFolderMark);
  return result;
}

bool namesDrive(std::string_view path) {
  if (path.size() < 2 || path[1] != ':') return false;
  const std::string letter = upper(path.substr(0, 1));
  const bool parted = path.size() == 2 || path[2] == '\\' || path[2] == '/';
  return letter[0] >= 'A' && letter[0] <= 'Z' && parted;
}

}  // namespace kelvaron
