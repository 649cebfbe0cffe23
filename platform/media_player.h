// A player of streams.
#pragma once

#include <functional>
#include <string>

#include "base/non_copyable.h"

namespace kelvaron {

class MediaPlayer : NonCopyable {
 public:
  virtual ~MediaPlayer() = default;

  /// Begins to buffer and play what the address leads to, in place of what was playing, and returns
  /// at once. Silence is the only sign of a stream that can't be reached.
  virtual void Open(const std::string& address) = 0;
  virtual void Stop() = 0;
  /// How full the buffer is, in percent: 100 while it plays, 0 while nothing is open.
  virtual int BufferingProgress() const = 0;
  /// In hundredths of a decibel below full volume: 0 is full, -2900 quiet. Until it is set, the
  /// volume is the player's own.
  virtual void setVolume(int hundredths) = 0;

  /// This machine can't play what was opened, or plays it unheard: a text for the user that tells
  /// why. Raised in a turn of the loop, at most once for each `Open`.
  std::function<void(const std::string& text)> onTrouble;
};

}  // namespace kelvaron
