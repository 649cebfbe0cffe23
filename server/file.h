// Reading a whole file, and replacing one so that a crash leaves the old or the new, never half.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kelvaron::server {

/// The bytes of a file, or nothing when there is none. Throws `StoreError` when it can't be read.
std::optional<std::string> readFile(const std::filesystem::path& path);

/// Writes beside `path`, brings the bytes to the disk and renames. The file is readable for its
/// owner alone. Throws `StoreError` and leaves the old file when any step fails.
void replaceFile(const std::filesystem::path& path, std::string_view bytes);

}  // namespace kelvaron::server
