#include "native/system_registry.h"

#include <map>
#include <utility>

#include "base/code_page.h"
#include "native/disk_names.h"
#include "native/windows/system_headers.h"

namespace kelvaron {
namespace {

/// The root's handle, a number that the system makes longer with its sign.
HKEY machine() {
  return reinterpret_cast<HKEY>(
      static_cast<LONG_PTR>(static_cast<LONG>(registry_key::HKEY_LOCAL_MACHINE)));
}

class WindowsRegistry final : public Registry {
 public:
  ~WindowsRegistry() override {
    for (const auto& [number, key] : open_) ::RegCloseKey(key);
  }

  std::optional<RegistryKey> RegOpenKeyExA(RegistryKey root, const std::string& name) override {
    HKEY opened = nullptr;
    if (root != registry_key::HKEY_LOCAL_MACHINE ||
        ::RegOpenKeyExA(machine(), name.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    open_[++last_] = opened;
    return last_;
  }

  std::optional<RegistryValue> RegQueryValueExA(RegistryKey key, const std::string& name,
                                                std::size_t room) override {
    const auto found = open_.find(key);
    if (found == open_.end()) return std::nullopt;
    RegistryValue value;
    value.bytes.resize(room);
    DWORD type = 0;
    auto size = static_cast<DWORD>(room);
    if (::RegQueryValueExA(found->second, name.c_str(), nullptr, &type,
                           reinterpret_cast<BYTE*>(value.bytes.data()), &size) != ERROR_SUCCESS) {
      return std::nullopt;
    }
    value.type = type;
    value.bytes.resize(size);
    return value;
  }

  void RegCloseKey(RegistryKey key) override {
    const auto closed = open_.extract(key);
    if (closed) ::RegCloseKey(closed.mapped());
  }

  bool fileExists(const std::string& path) override {
    const auto found = findOnDisk(path);
    return found && (found->kind == DiskName::Kind::program || found->kind == DiskName::Kind::file);
  }

 private:
  std::map<RegistryKey, HKEY> open_;
  RegistryKey last_ = 0;
};

}  // namespace

std::unique_ptr<Registry> makeRegistry() { return std::make_unique<WindowsRegistry>(); }

}  // namespace kelvaron
