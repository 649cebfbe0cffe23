#include "desktop/ports/sound_players.h"

#include "native/windows/system_headers.h"
// Needs the header before it.
#include <mmsystem.h>

namespace kelvaron {
namespace {

/// The system's own player, which is there at once and needs nothing installed: one sound at a
/// time, the next cuts off the one before it.
class SystemSoundPlayer final : public SoundPlayers {
 public:
  ~SystemSoundPlayer() override { ::PlaySoundW(nullptr, nullptr, 0); }

  void play(const std::filesystem::path& file) override {
    ::PlaySoundW(file.c_str(), nullptr, SND_FILENAME | SND_ASYNC | SND_NODEFAULT);
  }
  void dropFinished() override {}
  bool playing() const override { return false; }
};

}  // namespace

std::unique_ptr<SoundPlayers> SoundPlayers::make(std::size_t /*most*/) {
  return std::make_unique<SystemSoundPlayer>();
}

}  // namespace kelvaron
