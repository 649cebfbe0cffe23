#include "desktop/ports/system_sound.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kelvaron {
namespace {

// The sound system's own library prints an error for each attempt without a device.
bool hasSoundCard() {
  std::error_code error;
  return std::filesystem::exists("/dev/snd/timer", error);
}

}  // namespace

bool hasSoundDevice() {
  if (hasSoundCard() || std::getenv("PULSE_SERVER") != nullptr) return true;
  const char* session = std::getenv("XDG_RUNTIME_DIR");
  std::error_code error;
  return session != nullptr &&
         std::filesystem::exists(std::filesystem::path(session) / "pulse" / "native", error);
}

void prepareVlc(QLibrary& library) {
  // The interface version of libVLC 3.
  library.setFileNameAndVersion(QStringLiteral("vlc"), 5);
}

std::vector<std::string> vlcDevices(bool silent) {
  if (silent) return {"--aout=alsa,adummy", "--alsa-audio-device=null"};
  return {hasSoundCard() ? "--aout=pulse,alsa,adummy" : "--aout=pulse,adummy"};
}

}  // namespace kelvaron
