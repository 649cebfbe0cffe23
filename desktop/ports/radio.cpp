#include "desktop/ports/radio.h"

#include <cmath>
#include <utility>

namespace kelvaron {
namespace {

/// The library's scale is cubic: a percentage of p is 60 log p/100 decibels.
int percentOf(int hundredths) {
  return static_cast<int>(std::lround(100.0 * std::pow(10.0, hundredths / 6000.0)));
}

}  // namespace

Radio::Radio(SocketPort& sockets, EventLoop& loop, VlcLibrary::Output output, Patience patience)
    : sockets_(sockets), loop_(loop), output_(output), patience_(patience) {}

Radio::~Radio() {
  {
    const std::lock_guard lock(mutex_);
    ends_ = true;
  }
  wake_.notify_one();
  if (worker_.joinable()) worker_.join();
}

void Radio::Open(const std::string& address) {
  wish(Change::opened);
  search_ = std::make_unique<StreamSearch>(
      sockets_, loop_, address,
      [this](std::vector<std::string> streams) { wish(Change::found, std::move(streams)); },
      patience_.search);
}

void Radio::Stop() {
  search_.reset();
  if (worker_.joinable()) wish(Change::stopped);
}

void Radio::setVolume(int hundredths) {
  {
    const std::lock_guard lock(mutex_);
    volume_ = percentOf(hundredths);
  }
  wake_.notify_one();
}

void Radio::wish(Change change, std::vector<std::string> streams) {
  {
    const std::lock_guard lock(mutex_);
    if (change != Change::found) ++station_;
    // What was opened and not yet carried out is still to be told of its trouble.
    const bool opens =
        change == Change::opened || (change == Change::found && wish_ && wish_->opens);
    wish_ = Wish{station_, std::move(streams), opens};
    progress_ = 0;
    if (!worker_.joinable()) worker_ = std::thread([this] { work(); });
  }
  wake_.notify_one();
}

void Radio::work() {
  StreamPlayer player(output_, patience_.stream);
  std::uint64_t station = 0;
  std::unique_lock lock(mutex_);
  const auto called = [this] { return ends_ || wish_ || volume_; };
  while (!ends_) {
    if (volume_) {
      const int percent = *std::exchange(volume_, std::nullopt);
      lock.unlock();
      player.setVolume(percent);
      lock.lock();
    } else if (wish_) {
      const Wish wanted = *std::exchange(wish_, std::nullopt);
      station = wanted.station;
      lock.unlock();
      carryOut(player, wanted);
      lock.lock();
    } else if (!player.active()) {
      wake_.wait(lock, called);
    } else if (!wake_.wait_for(lock, StreamPlayer::kTick, called)) {
      lock.unlock();
      player.tick();
      lock.lock();
      if (station == station_) progress_ = player.progress();
    }
  }
  lock.unlock();
}

void Radio::carryOut(StreamPlayer& player, const Wish& wanted) {
  if (wanted.opens) {
    player.stop();
    if (const std::string trouble = player.prepare(); !trouble.empty()) {
      tellTrouble(wanted.station, trouble);
    }
  }
  player.play(wanted.streams);
}

void Radio::tellTrouble(std::uint64_t station, const std::string& text) {
  QMetaObject::invokeMethod(
      &turn_,
      [this, station, text] {
        if (station == station_ && onTrouble) onTrouble(text);
      },
      Qt::QueuedConnection);
}

}  // namespace kelvaron
