// Plays sound files with what the system has for it.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>

#include "base/non_copyable.h"

namespace kelvaron {

/// For one thread. Cuts off what still plays when it goes.
class SoundPlayers : NonCopyable {
 public:
  /// `most`: how many sounds may play at once where they can overlap; the oldest give way.
  static std::unique_ptr<SoundPlayers> make(std::size_t most);
  virtual ~SoundPlayers() = default;

  /// Starts a sound and returns. Silent where there is nothing to play on.
  virtual void play(const std::filesystem::path& file) = 0;
  /// Lets go of sounds that are over.
  virtual void dropFinished() = 0;
  /// Whether any sound is yet to be let go.
  virtual bool playing() const = 0;
};

}  // namespace kelvaron
