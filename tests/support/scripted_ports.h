// A registry and a player under a test's control.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/fault.h"
#include "platform/media_player.h"
#include "platform/registry.h"

namespace kelvaron::testing {

class ScriptedRegistry : public Registry {
 public:
  /// By key and value name.
  std::map<std::string, std::map<std::string, RegistryValue>> keys;
  std::set<std::string> existing;
  /// What was looked up, in order.
  std::vector<std::string> asked;
  int open = 0;

  std::optional<RegistryKey> RegOpenKeyExA(RegistryKey root, const std::string& name) override {
    asked.push_back(name);
    if (root != registry_key::HKEY_LOCAL_MACHINE || !keys.contains(name)) return std::nullopt;
    ++open;
    current_ = name;
    return 1;
  }
  std::optional<RegistryValue> RegQueryValueExA(RegistryKey /*key*/, const std::string& name,
                                                std::size_t room) override {
    const auto& values = keys[current_];
    const auto found = values.find(name);
    if (found == values.end() || found->second.bytes.size() > room) return std::nullopt;
    return found->second;
  }
  void RegCloseKey(RegistryKey /*key*/) override { --open; }
  bool fileExists(const std::string& path) override { return existing.contains(path); }

 private:
  std::string current_;
};

class ScriptedPlayer : public MediaPlayer {
 public:
  /// Each call, as "open ADDRESS", "stop" or "volume NUMBER".
  std::vector<std::string> calls;
  int progress = 0;
  bool fails = false;

  void Open(const std::string& address) override { note("open " + address); }
  void Stop() override { note("stop"); }
  int BufferingProgress() const override { return progress; }
  void setVolume(int hundredths) override { note("volume " + std::to_string(hundredths)); }

 private:
  void note(const std::string& call) {
    if (fails) throw Fault(fault_number::kInvalidCall, "The player failed");
    calls.push_back(call);
  }
};

}  // namespace kelvaron::testing
