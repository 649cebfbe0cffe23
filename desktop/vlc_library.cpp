#include "desktop/vlc_library.h"

#include <dlfcn.h>

#include <array>
#include <cstdarg>
#include <filesystem>
#include <optional>
#include <system_error>

namespace kelvaron {
namespace {

// The interface version of libVLC 3.
constexpr const char* kLibrary = "libvlc.so.5";

template <class Function>
bool resolve(void* library, const char* name, Function& function) {
  // The one way from an address to a function.
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

std::optional<VlcLibrary> open() {
  void* library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return std::nullopt;
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
      resolve(library, "libvlc_media_player_get_state", vlc.playerGetState);
  return complete ? std::optional(vlc) : std::nullopt;
}

void dropMessage(void* /*data*/, int /*level*/, const libvlc_log_t* /*context*/,
                 const char* /*format*/, va_list /*arguments*/) {}

// The sound system's own library prints an error for each attempt without a device.
bool hasSoundCard() {
  std::error_code error;
  return std::filesystem::exists("/dev/snd/timer", error);
}

}  // namespace

const VlcLibrary* VlcLibrary::load() {
  static const std::optional<VlcLibrary> library = open();
  return library ? &*library : nullptr;
}

libvlc_instance_t* VlcLibrary::makeInstance() const {
  const std::array<const char*, 6> options = {
      "--quiet",
      "--no-video",
      "--no-xlib",
      "--intf=dummy",
      "--no-media-library",
      hasSoundCard() ? "--aout=pulse,alsa,adummy" : "--aout=pulse,adummy",
  };
  libvlc_instance_t* instance = newInstance(static_cast<int>(options.size()), options.data());
  if (instance != nullptr) logSet(instance, dropMessage, nullptr);
  return instance;
}

}  // namespace kelvaron
