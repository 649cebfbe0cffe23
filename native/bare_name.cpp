#include "native/bare_name.h"

#include <algorithm>
#include <system_error>

#include "base/code_page.h"
#include "native/paths.h"

namespace kelvaron {

bool isBareName(std::string_view name) {
  return !name.empty() && name.front() != '.' && std::ranges::none_of(name, [](char character) {
    return isControl(character) || character == '/' || character == '\\' || character == ':';
  });
}

std::optional<std::filesystem::path> findByName(const std::filesystem::path& folder,
                                                std::string_view name) {
  const std::string wanted = upper(name);
  const std::string exact = toUtf8(name);
  std::optional<std::filesystem::path> best;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    const std::string onDisk = utf8Of(entry->path().filename());
    const std::string coded = fromUtf8(onDisk);
    if (upper(coded) != wanted || toUtf8(coded) != onDisk) continue;
    if (onDisk == exact) return entry->path();
    if (!best || entry->path() < *best) best = entry->path();
  }
  return best;
}

}  // namespace kelvaron
