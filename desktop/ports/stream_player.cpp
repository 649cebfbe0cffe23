#include "desktop/ports/stream_player.h"

#include <cstddef>
#include <utility>

#include "desktop/ports/system_sound.h"
#include "radio/asx_playlist.h"

namespace kelvaron {
namespace {

// Playlists may lead to each other for ever.
constexpr std::size_t kMostStreams = 64;

}  // namespace

StreamPlayer::~StreamPlayer() {
  if (player_ != nullptr) {
    vlc_->playerStop(player_);
    vlc_->eventDetach(vlc_->playerEventManager(player_), libvlc_MediaPlayerBuffering, buffering,
                      &filled_);
    vlc_->playerRelease(player_);
  }
  if (instance_ != nullptr) vlc_->release(instance_);
}

std::string StreamPlayer::prepare() {
  if (!std::exchange(tried_, true)) load();
  if (vlc_ == nullptr) {
    return "The radio is silent: it needs the media library libVLC (libvlc5), which is not "
           "installed.";
  }
  if (player_ == nullptr) {
    return "The radio is silent: the plug-ins of the media library libVLC (vlc-plugin-base) are "
           "not installed.";
  }
  if (output_ == VlcLibrary::Output::system && !hasSoundDevice()) {
    return "The radio is silent: this machine has no sound device.";
  }
  return {};
}

void StreamPlayer::load() {
  vlc_ = VlcLibrary::load();
  if (vlc_ == nullptr) return;
  instance_ = vlc_->makeInstance(output_);
  if (instance_ == nullptr) return;
  player_ = vlc_->playerNew(instance_);
  if (player_ == nullptr) return;
  vlc_->eventAttach(vlc_->playerEventManager(player_), libvlc_MediaPlayerBuffering, buffering,
                    &filled_);
}

void StreamPlayer::play(std::vector<std::string> streams) {
  stop();
  streams_ = std::move(streams);
  next_ = 0;
  if (player_ != nullptr) playNext();
}

void StreamPlayer::stop() {
  if (active_) vlc_->playerStop(player_);
  active_ = false;
  filled_ = 0;
}

void StreamPlayer::setVolume(int percent) {
  volume_ = percent;
  volumeHolds_ = false;
  if (active_) tendVolume();
}

void StreamPlayer::tick() {
  if (!active_) return;
  switch (vlc_->playerGetState(player_)) {
    case libvlc_Playing:
    case libvlc_Paused:
      began_ = true;
      tendVolume();
      break;
    case libvlc_Ended:
      takeSubItems();
      playNext();
      break;
    case libvlc_Error:
    case libvlc_Stopped:
      playNext();
      break;
    default:
      if (!began_ && std::chrono::steady_clock::now() - begun_ > opening_) playNext();
  }
}

void StreamPlayer::playNext() {
  stop();
  if (next_ == streams_.size()) return;
  libvlc_media_t* media = vlc_->mediaNewLocation(instance_, streams_[next_++].c_str());
  if (media == nullptr) return;
  vlc_->playerSetMedia(player_, media);
  vlc_->mediaRelease(media);
  began_ = false;
  volumeHolds_ = false;
  begun_ = std::chrono::steady_clock::now();
  active_ = true;
  if (vlc_->playerPlay(player_) != 0) stop();
}

void StreamPlayer::takeSubItems() {
  libvlc_media_t* media = vlc_->playerGetMedia(player_);
  if (media == nullptr) return;
  libvlc_media_list_t* items = vlc_->mediaSubItems(media);
  vlc_->mediaRelease(media);
  if (items == nullptr) return;
  std::vector<std::string> found;
  vlc_->listLock(items);
  for (int i = 0; i < vlc_->listCount(items) && streams_.size() + found.size() < kMostStreams;
       ++i) {
    libvlc_media_t* item = vlc_->listItem(items, i);
    char* address = vlc_->mediaGetMrl(item);
    if (auto stream = resolveAddress({}, address == nullptr ? "" : address)) {
      found.push_back(std::move(*stream));
    }
    vlc_->freeText(address);
    vlc_->mediaRelease(item);
  }
  vlc_->listUnlock(items);
  vlc_->listRelease(items);
  streams_.insert(streams_.begin() + static_cast<std::ptrdiff_t>(next_), found.begin(),
                  found.end());
}

// The volume takes hold only when the sound output is there, some time after the stream began. From
// then on the user may change it in the system's mixer.
void StreamPlayer::tendVolume() {
  if (!volume_ || volumeHolds_) return;
  vlc_->audioSetVolume(player_, *volume_);
  volumeHolds_ = volume() == *volume_;
}

// On a thread of the library, which must not be called from here.
void StreamPlayer::buffering(const libvlc_event_t* event, void* filled) {
  static_cast<std::atomic<int>*>(filled)->store(
      static_cast<int>(event->u.media_player_buffering.new_cache));
}

}  // namespace kelvaron
