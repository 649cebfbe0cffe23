// Ports for tests and benchmarks that neither look for a tool nor play the radio.
#pragma once

#include "platform/media_player.h"
#include "platform/registry.h"

namespace kelvaron::testing {

class EmptyRegistry : public Registry {
 public:
  std::optional<RegistryKey> RegOpenKeyExA(RegistryKey, const std::string&) override { return {}; }
  std::optional<RegistryValue> RegQueryValueExA(RegistryKey, const std::string&,
                                                std::size_t) override {
    return {};
  }
  void RegCloseKey(RegistryKey) override {}
  bool fileExists(const std::string&) override { return false; }
};

class SilentPlayer : public MediaPlayer {
 public:
  void Open(const std::string&) override {}
  void Stop() override {}
  int BufferingProgress() const override { return 0; }
  void setVolume(int) override {}
};

}  // namespace kelvaron::testing
