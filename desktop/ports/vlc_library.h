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
  decltype(&libvlc_media_new_location) mediaNewLocation = nullptr;
  decltype(&libvlc_media_player_new) playerNew = nullptr;
  decltype(&libvlc_media_player_set_media) playerSetMedia = nullptr;
  decltype(&libvlc_media_player_event_manager) playerEventManager = nullptr;
  decltype(&libvlc_event_attach) eventAttach = nullptr;
  decltype(&libvlc_event_detach) eventDetach = nullptr;
  decltype(&libvlc_media_player_get_media) playerGetMedia = nullptr;
  decltype(&libvlc_media_subitems) mediaSubItems = nullptr;
  decltype(&libvlc_media_list_lock) listLock = nullptr;
  decltype(&libvlc_media_list_unlock) listUnlock = nullptr;
  decltype(&libvlc_media_list_count) listCount = nullptr;
  decltype(&libvlc_media_list_item_at_index) listItem = nullptr;
  decltype(&libvlc_media_list_release) listRelease = nullptr;
  decltype(&libvlc_media_get_mrl) mediaGetMrl = nullptr;
  decltype(&libvlc_free) freeText = nullptr;
  decltype(&libvlc_audio_set_volume) audioSetVolume = nullptr;
  decltype(&libvlc_audio_get_volume) audioGetVolume = nullptr;

  enum class Output { system, silent };

  /// Null where the library is missing. May take a moment: not for the thread of the windows.
  /// Safe from any thread.
  static const VlcLibrary* load();
  /// An instance for sound alone, which prints nothing; null on failure.
  libvlc_instance_t* makeInstance(Output output = Output::system) const;
};

/// Takes an empty `http_proxy` out of the environment: to every other program it means no proxy, to
/// the library a proxy without an address, and no station answers. Only while there is one thread.
void dropEmptyProxy();

}  // namespace kelvaron
