// The system's store of settings, as far as the search for an information tool reads it. Key and
// value names are compared without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "base/non_copyable.h"

namespace kelvaron {

/// A key that is open.
using RegistryKey = std::uint32_t;

namespace registry_key {
/// The root of what holds for the whole machine, which is always open.
inline constexpr RegistryKey HKEY_LOCAL_MACHINE = 0x80000002;
}  // namespace registry_key

namespace registry_type {
inline constexpr std::uint32_t kString = 1;
inline constexpr std::uint32_t kNumber = 4;
}  // namespace registry_type

struct RegistryValue {
  std::uint32_t type = 0;
  /// As stored: a string, in code page 1252, may have a NUL at its end; a number has its lowest
  /// byte first.
  std::string bytes;
};

class Registry : NonCopyable {
 public:
  virtual ~Registry() = default;

  /// Opens the key of this path under `root`, levels parted by "\"; none when there is no such key.
  virtual std::optional<RegistryKey> RegOpenKeyExA(RegistryKey root, const std::string& name) = 0;
  /// A value of an open key; none when the key lacks it or it has more bytes than `room`.
  virtual std::optional<RegistryValue> RegQueryValueExA(RegistryKey key, const std::string& name,
                                                        std::size_t room) = 0;
  virtual void RegCloseKey(RegistryKey key) = 0;
  /// Whether there is a file of this full path, of which a part was read from a value.
  virtual bool fileExists(const std::string& path) = 0;
};

}  // namespace kelvaron
