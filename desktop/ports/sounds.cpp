#include "desktop/ports/sounds.h"

#include <chrono>
#include <memory>
#include <vector>

#include "base/non_copyable.h"
#include "desktop/ports/vlc_library.h"
#include "native/bare_name.h"

namespace kelvaron {
namespace {

// How often players that have finished are looked for while some play.
constexpr std::chrono::milliseconds kLookAgain{200};

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
class SoundPlayers : NonCopyable {
 public:
  ~SoundPlayers() {
    players_.clear();
    if (instance_ != nullptr) vlc_->release(instance_);
  }

  void play(const std::filesystem::path& file) {
    if (!tried_) {
      tried_ = true;
      vlc_ = VlcLibrary::load();
      if (vlc_ != nullptr) instance_ = vlc_->makeInstance();
    }
    if (instance_ == nullptr) return;
    if (players_.size() == WaveSounds::kAtOnce) players_.pop_front();
    players_.push_back(std::make_unique<Player>(*vlc_, instance_, file));
  }
  void dropFinished() {
    std::erase_if(players_, [](const auto& player) { return player->finished(); });
  }
  bool playing() const { return !players_.empty(); }

 private:
  bool tried_ = false;
  const VlcLibrary* vlc_ = nullptr;
  libvlc_instance_t* instance_ = nullptr;
  std::deque<std::unique_ptr<Player>> players_;
};

}  // namespace

WaveSounds::~WaveSounds() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  wake_.notify_one();
  if (worker_.joinable()) worker_.join();
}

std::optional<std::filesystem::path> WaveSounds::find(const std::filesystem::path& folder,
                                                      std::string_view name) {
  if (!isBareName(name)) return std::nullopt;
  return findByName(folder, std::string(name) + ".wav");
}

void WaveSounds::playFrom(const Folders& folders, std::string_view name) {
  if (!isBareName(name)) return;
  {
    const std::lock_guard lock(mutex_);
    if (waiting_.size() == kAtOnce) waiting_.pop_front();
    waiting_.push_back({&folders, std::string(name)});
    if (!worker_.joinable()) worker_ = std::thread([this] { work(); });
  }
  wake_.notify_one();
}

void WaveSounds::work() {
  SoundPlayers players;
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (!waiting_.empty()) {
      const Wanted wanted = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      for (const std::filesystem::path& folder : *wanted.folders) {
        const auto file = find(folder, wanted.name);
        if (!file) continue;
        players.play(*file);
        break;
      }
      lock.lock();
      continue;
    }
    const auto called = [this] { return ends_ || !waiting_.empty(); };
    if (!players.playing()) {
      wake_.wait(lock, called);
    } else if (!wake_.wait_for(lock, kLookAgain, called)) {
      lock.unlock();
      players.dropFinished();
      lock.lock();
    }
  }
  lock.unlock();
}

}  // namespace kelvaron
