#include "desktop/ports/vlc_library.h"

#include <QLibrary>
#include <cstdarg>
#include <optional>
#include <string>
#include <vector>

#include "desktop/ports/system_sound.h"

namespace kelvaron {
namespace {

template <class Function>
bool resolve(QLibrary& library, const char* name, Function& function) {
  // The one way from an address to a function.
  function = reinterpret_cast<Function>(library.resolve(name));
  return function != nullptr;
}

std::optional<VlcLibrary> open() {
  QLibrary library;
  prepareVlc(library);
  library.setLoadHints(QLibrary::ResolveAllSymbolsHint);
  if (!library.load()) return std::nullopt;
  VlcLibrary vlc;
  const bool complete =
      resolve(library, "libvlc_new", vlc.newInstance) &&
      resolve(library, "libvlc_release", vlc.release) &&
      resolve(library, "libvlc_log_set", vlc.logSet) &&
      resolve(library, "libvlc_media_new_path", vlc.mediaNewPath) &&
      resolve(library, "libvlc_media_release", vlc.mediaRelease) &&
      resolve(library, "libvlc_media_player_new_from_media", vlc.playerNewFromMedia) &&
      resolve(library, "libvlc_media_player_release", vlc.playerRelease) &&
      resolve(library, "libvlc_media_player_play", vlc.playerPlay) &&
      resolve(library, "libvlc_media_player_stop", vlc.playerStop) &&
      resolve(library, "libvlc_media_player_get_state", vlc.playerGetState) &&
      resolve(library, "libvlc_media_new_location", vlc.mediaNewLocation) &&
      resolve(library, "libvlc_media_player_new", vlc.playerNew) &&
      resolve(library, "libvlc_media_player_set_media", vlc.playerSetMedia) &&
      resolve(library, "libvlc_media_player_event_manager", vlc.playerEventManager) &&
      resolve(library, "libvlc_event_attach", vlc.eventAttach) &&
      resolve(library, "libvlc_event_detach", vlc.eventDetach) &&
      resolve(library, "libvlc_media_player_get_media", vlc.playerGetMedia) &&
      resolve(library, "libvlc_media_subitems", vlc.mediaSubItems) &&
      resolve(library, "libvlc_media_list_lock", vlc.listLock) &&
      resolve(library, "libvlc_media_list_unlock", vlc.listUnlock) &&
      resolve(library, "libvlc_media_list_count", vlc.listCount) &&
      resolve(library, "libvlc_media_list_item_at_index", vlc.listItem) &&
      resolve(library, "libvlc_media_list_release", vlc.listRelease) &&
      resolve(library, "libvlc_media_get_mrl", vlc.mediaGetMrl) &&
      resolve(library, "libvlc_free", vlc.freeText) &&
      resolve(library, "libvlc_audio_set_volume", vlc.audioSetVolume) &&
      resolve(library, "libvlc_audio_get_volume", vlc.audioGetVolume);
  return complete ? std::optional(vlc) : std::nullopt;
}

void dropMessage(void* /*data*/, int /*level*/, const libvlc_log_t* /*context*/,
                 const char* /*format*/, va_list /*arguments*/) {}

}  // namespace

void dropEmptyProxy() {
  constexpr const char* kProxy = "http_proxy";
  if (qEnvironmentVariableIsSet(kProxy) && qEnvironmentVariableIsEmpty(kProxy)) qunsetenv(kProxy);
}

const VlcLibrary* VlcLibrary::load() {
  static const std::optional<VlcLibrary> library = open();
  return library ? &*library : nullptr;
}

libvlc_instance_t* VlcLibrary::makeInstance(Output output) const {
  std::vector<const char*> options = {
      "--quiet", "--no-video", "--no-xlib", "--intf=dummy", "--no-media-library",
  };
  const std::vector<std::string> devices = vlcDevices(output == Output::silent);
  for (const std::string& device : devices) options.push_back(device.c_str());
  libvlc_instance_t* instance = newInstance(static_cast<int>(options.size()), options.data());
  if (instance != nullptr) logSet(instance, dropMessage, nullptr);
  return instance;
}

}  // namespace kelvaron
