#include "native/posix/system_information.h"

#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>

#include "base/code_page.h"
#include "native/disk_names.h"
#include "native/system_registry.h"

namespace kelvaron {
namespace {

constexpr RegistryKey kToolKey = 1;
constexpr std::string_view kToolKeyName = R"(SOFTWARE\MICROSOFT\SHARED TOOLS\MSINFO)";
constexpr std::string_view kToolValueName = "PATH";

// The fullest account of a machine first.
constexpr std::array<const char*, 7> kTools = {
    "hardinfo2",           "hardinfo",  "kinfocenter", "gnome-system-monitor",
    "mate-system-monitor", "ksysguard", "xfce4-about"};

bool isProgram(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) && ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::unique_ptr<Registry> makeRegistry() {
  const char* searchPath = std::getenv("PATH");
  return std::make_unique<SystemInformation>(searchPath == nullptr ? "" : searchPath);
}

std::string SystemInformation::findTool() const {
  for (const char* tool : kTools) {
    std::istringstream folders(searchPath_);
    for (std::string folder; std::getline(folders, folder, ':');) {
      // A relative folder would mean another one with each working folder.
      const std::filesystem::path path = std::filesystem::path(folder) / tool;
      if (path.is_absolute() && isProgram(path)) return path.string();
    }
  }
  return {};
}

std::optional<RegistryKey> SystemInformation::RegOpenKeyExA(RegistryKey root,
                                                            const std::string& name) {
  if (root != registry_key::HKEY_LOCAL_MACHINE || upper(name) != kToolKeyName) return std::nullopt;
  return kToolKey;
}

std::optional<RegistryValue> SystemInformation::RegQueryValueExA(RegistryKey key,
                                                                 const std::string& name,
                                                                 std::size_t room) {
  if (key != kToolKey || upper(name) != kToolValueName) return std::nullopt;
  const std::string tool = fromUtf8(findTool());
  if (tool.empty() || tool.size() > room) return std::nullopt;
  return RegistryValue{.type = registry_type::kString, .bytes = tool};
}

bool SystemInformation::fileExists(const std::string& path) {
  const auto found = findOnDisk(path);
  return found && (found->kind == DiskName::Kind::program || found->kind == DiskName::Kind::file);
}

}  // namespace kelvaron
