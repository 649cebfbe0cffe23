#include "native/windows/long_path.h"

#include <system_error>

namespace kelvaron {

std::wstring longPath(const std::filesystem::path& path) {
  constexpr std::size_t kLongestPlain = 247;  // of a folder; files may have twelve more
  std::error_code failed;
  std::filesystem::path whole = std::filesystem::absolute(path, failed).lexically_normal();
  if (failed) whole = path;
  whole.make_preferred();
  const std::wstring& text = whole.native();
  if (text.size() <= kLongestPlain || text.starts_with(LR"(\\?\)")) return path.native();
  if (text.starts_with(LR"(\\)")) return LR"(\\?\UNC)" + text.substr(1);
  return LR"(\\?\)" + text;
}

}  // namespace kelvaron
