// The information tool of this system's desktop, told where Kelvaron looks for one.
#pragma once

#include <string>

#include "platform/registry.h"

namespace kelvaron {

/// There is no registry on this system: the one value that there may be is the tool's full path,
/// under the first key that the search asks for.
class SystemInformation final : public Registry {
 public:
  /// `searchPath` has folders parted by ":", as the environment variable PATH; UTF-8.
  explicit SystemInformation(std::string searchPath) : searchPath_(std::move(searchPath)) {}

  std::optional<RegistryKey> RegOpenKeyExA(RegistryKey root, const std::string& name) override;
  std::optional<RegistryValue> RegQueryValueExA(RegistryKey key, const std::string& name,
                                                std::size_t room) override;
  void RegCloseKey(RegistryKey /*key*/) override {}
  bool fileExists(const std::string& path) override;

 private:
  std::string findTool() const;

  std::string searchPath_;
};

}  // namespace kelvaron
