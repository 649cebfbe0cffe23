#include "desktop/ports/sound_players.h"

#include <deque>

#include "desktop/ports/vlc_library.h"

namespace kelvaron {
namespace {

class Player : NonCopyable {
 public:
  Player(const VlcLibrary& vlc, libvlc_instance_t* instance, const std::filesystem::path& file)
      : vlc_(&vlc) {
    libvlc_media_t* media = vlc.mediaNewPath(instance, file.c_str());
    if (media == nullptr) return;
    player_ = vlc.playerNewFromMedia(media);
    vlc.mediaRelease(media);
    if (player_ != nullptr) vlc.playerPlay(player_);
  }
  ~Player() {
    if (player_ == nullptr) return;
    vlc_->playerStop(player_);
    vlc_->playerRelease(player_);
  }

  bool finished() const {
    if (player_ == nullptr) return true;
    const libvlc_state_t state = vlc_->playerGetState(player_);
    return state == libvlc_Ended || state == libvlc_Error || state == libvlc_Stopped;
  }

 private:
  const VlcLibrary* vlc_;
  libvlc_media_player_t* player_ = nullptr;
};

/// The players of one instance, made at the first sound.
class VlcSoundPlayers final : public SoundPlayers {
 public:
  explicit VlcSoundPlayers(std::size_t most) : most_(most) {}
  ~VlcSoundPlayers() override {
    players_.clear();
    if (instance_ != nullptr) vlc_->release(instance_);
  }

  void play(const std::filesystem::path& file) override {
    if (!tried_) {
      tried_ = true;
      vlc_ = VlcLibrary::load();
      if (vlc_ != nullptr) instance_ = vlc_->makeInstance();
    }
    if (instance_ == nullptr) return;
    if (players_.size() == most_) players_.pop_front();
    players_.push_back(std::make_unique<Player>(*vlc_, instance_, file));
  }
  void dropFinished() override {
    std::erase_if(players_, [](const auto& player) { return player->finished(); });
  }
  bool playing() const override { return !players_.empty(); }

 private:
  const std::size_t most_;
  bool tried_ = false;
  const VlcLibrary* vlc_ = nullptr;
  libvlc_instance_t* instance_ = nullptr;
  std::deque<std::unique_ptr<Player>> players_;
};

}  // namespace

std::unique_ptr<SoundPlayers> SoundPlayers::make(std::size_t most) {
  return std::make_unique<VlcSoundPlayers>(most);
}

}  // namespace kelvaron
