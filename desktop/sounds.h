// Short sounds, played without waiting.
#pragma once

#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "platform/ports.h"

namespace kelvaron {

/// Sounds may overlap; in a flood the oldest give way. The sound system is started on a thread of
/// its own at the first sound that there is.
class WaveSounds final : public SoundPort {
 public:
  /// Sounds that play at once, and that wait to be started, at most.
  static constexpr std::size_t kAtOnce = 8;

  explicit WaveSounds(std::filesystem::path folder) : folder_(std::move(folder)) {}
  WaveSounds(const WaveSounds&) = delete;
  WaveSounds& operator=(const WaveSounds&) = delete;
  /// Cuts off what still plays.
  ~WaveSounds() override;

  void play(std::string_view name) override;

  /// The file of a sound, upper and lower case alike; nothing for a name that is not a bare one.
  std::optional<std::filesystem::path> find(std::string_view name) const;

 private:
  void work();

  std::filesystem::path folder_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<std::string> waiting_;
  bool ends_ = false;
  std::thread worker_;
};

}  // namespace kelvaron
