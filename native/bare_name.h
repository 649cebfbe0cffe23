// Names of files without a folder, and finding them on a disk that tells upper from lower case.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace kelvaron {

/// Whether a name (code page 1252) can stand for one file in a folder and for nothing else: not
/// empty, no folder or drive part, no control character, not hidden.
bool isBareName(std::string_view name);

/// The entry of `folder` with this name, upper and lower case alike: the one that is spelled
/// exactly so, else the first in byte order. Names on the disk are UTF-8; those with characters
/// that the code page lacks are never found. None where the folder can't be read.
std::optional<std::filesystem::path> findByName(const std::filesystem::path& folder,
                                                std::string_view name);

}  // namespace kelvaron
