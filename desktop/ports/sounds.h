// Short sounds, played without waiting.
#pragma once

#include <array>
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

  /// Sounds of `play` lie in the folder `sounds` of these folders, those of `playBeside` in the
  /// folders themselves. What the user's own folder has comes first.
  WaveSounds(const std::filesystem::path& own, const std::filesystem::path& installed)
      : beside_{own, installed}, sounds_{own / "sounds", installed / "sounds"} {}
  /// Cuts off what still plays.
  ~WaveSounds() override;

  void play(std::string_view name) override { playFrom(sounds_, name); }
  void playBeside(std::string_view name) override { playFrom(beside_, name); }

  /// The file of a sound, upper and lower case alike; nothing for a name that is not a bare one.
  static std::optional<std::filesystem::path> find(const std::filesystem::path& folder,
                                                   std::string_view name);

 private:
  using Folders = std::array<std::filesystem::path, 2>;
  struct Wanted {
    const Folders* folders;
    std::string name;
  };

  void playFrom(const Folders& folders, std::string_view name);
  void work();

  const Folders beside_;
  const Folders sounds_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::deque<Wanted> waiting_;
  bool ends_ = false;
  std::thread worker_;
};

}  // namespace kelvaron
