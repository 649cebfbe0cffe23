// The sound library's player of streams. All calls are on one thread, which they may hold up.
#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/non_copyable.h"
#include "desktop/ports/vlc_library.h"

namespace kelvaron {

class StreamPlayer : NonCopyable {
 public:
  /// How often `tick` wants to be called while `active`.
  static constexpr std::chrono::milliseconds kTick{100};
  /// How long a stream may take to begin.
  static constexpr std::chrono::milliseconds kOpening{20'000};

  StreamPlayer(VlcLibrary::Output output, std::chrono::milliseconds opening)
      : output_(output), opening_(opening) {}
  ~StreamPlayer();

  /// Loads the library, the first time. A text for the user when nothing can be heard here.
  std::string prepare();
  /// Plays the first of the streams that can be played, and each next one when it ends. Web
  /// addresses in a playlist that the library finds instead of a stream come next.
  void play(std::vector<std::string> streams);
  void stop();
  /// In percent of the library's scale.
  void setVolume(int percent);
  void tick();

  bool active() const { return active_; }
  /// As the library tells it; -1 while there is no output.
  int volume() const { return player_ == nullptr ? -1 : vlc_->audioGetVolume(player_); }
  /// In percent.
  int progress() const { return active_ ? filled_.load() : 0; }

 private:
  static void buffering(const libvlc_event_t* event, void* filled);
  void load();
  void playNext();
  void takeSubItems();
  void tendVolume();

  const VlcLibrary::Output output_;
  const std::chrono::milliseconds opening_;
  bool tried_ = false;
  const VlcLibrary* vlc_ = nullptr;
  libvlc_instance_t* instance_ = nullptr;
  libvlc_media_player_t* player_ = nullptr;
  // Written by a thread of the library.
  std::atomic<int> filled_ = 0;

  std::vector<std::string> streams_;
  std::size_t next_ = 0;
  bool active_ = false;
  bool began_ = false;
  std::chrono::steady_clock::time_point begun_;
  std::optional<int> volume_;
  bool volumeHolds_ = false;
};

}  // namespace kelvaron
