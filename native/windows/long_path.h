// Paths of any length.
#pragma once

#include <filesystem>
#include <string>

namespace kelvaron {

/// The path as the system takes it past 259 characters: absolute, behind `\\?\`. A short one stays
/// as it is.
std::wstring longPath(const std::filesystem::path& path);

}  // namespace kelvaron
