// libVLC, loaded when the first sound is played: the program starts without it, and runs where it
// is missing.
#pragma once

#include <vlc/vlc.h>

namespace kelvaron {

/// The functions of the library that Kelvaron calls, each as its header tells it.
struct VlcLibrary {
  decltype(&libvlc_new) newInstance = nullptr;
  decltype(&libvlc_release) release = nullptr;
  decltype(&libvlc_log_set) logSet = nullptr;
  decltype(&libvlc_media_new_path) mediaNewPath = nullptr;
  decltype(&libvlc_media_release) mediaRelease = nullptr;
  decltype(&libvlc_media_player_new_from_media) playerNewFromMedia = nullptr;
  decltype(&libvlc_media_player_release) playerRelease = nullptr;
  decltype(&libvlc_media_player_play) playerPlay = nullptr;
  decltype(&libvlc_media_player_stop) playerStop = nullptr;
  decltype(&libvlc_media_player_get_state) playerGetState = nullptr;

  /// Null where the library is missing. May take a moment: not for the thread of the windows.
  /// Safe from any thread.
  static const VlcLibrary* load();
  /// An instance for sound alone, which prints nothing; null on failure.
  libvlc_instance_t* makeInstance() const;
};

}  // namespace kelvaron
