#include "desktop/ports/sounds.h"

#include <chrono>

#include "desktop/ports/sound_players.h"
#include "native/bare_name.h"

namespace kelvaron {
namespace {

// How often players that have finished are looked for while some play.
constexpr std::chrono::milliseconds kLookAgain{200};

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
  const auto players = SoundPlayers::make(kAtOnce);
  std::unique_lock lock(mutex_);
  while (!ends_) {
    if (!waiting_.empty()) {
      const Wanted wanted = std::move(waiting_.front());
      waiting_.pop_front();
      lock.unlock();
      for (const std::filesystem::path& folder : *wanted.folders) {
        const auto file = find(folder, wanted.name);
        if (!file) continue;
        players->play(*file);
        break;
      }
      lock.lock();
      continue;
    }
    const auto called = [this] { return ends_ || !waiting_.empty(); };
    if (!players->playing()) {
      wake_.wait(lock, called);
    } else if (!wake_.wait_for(lock, kLookAgain, called)) {
      lock.unlock();
      players->dropFinished();
      lock.lock();
    }
  }
  lock.unlock();
}

}  // namespace kelvaron
