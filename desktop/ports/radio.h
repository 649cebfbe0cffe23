// The radio's player: finds a station's streams and has them played on a thread of its own.
#pragma once

#include <QObject>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "desktop/ports/stream_player.h"
#include "platform/media_player.h"
#include "radio/stream_search.h"

namespace kelvaron {

/// Costs nothing until the first station is opened. The calls of the port never wait for the sound
/// library, and no thread but theirs tells of trouble.
class Radio final : public MediaPlayer {
 public:
  struct Patience {
    /// Of the station's playlist, and of each stream.
    std::chrono::milliseconds search = StreamSearch::kPatience;
    std::chrono::milliseconds stream = StreamPlayer::kOpening;
  };

  Radio(SocketPort& sockets, EventLoop& loop,
        VlcLibrary::Output output = VlcLibrary::Output::system)
      : Radio(sockets, loop, output, Patience{}) {}
  Radio(SocketPort& sockets, EventLoop& loop, VlcLibrary::Output output, Patience patience);
  ~Radio() override;

  void Open(const std::string& address) override;
  void Stop() override;
  int BufferingProgress() const override { return progress_; }
  void setVolume(int hundredths) override;

 private:
  /// The latest thing that the user wanted, for the thread.
  struct Wish {
    std::uint64_t station = 0;
    std::vector<std::string> streams;
    bool opens = false;
  };

  enum class Change { opened, found, stopped };

  void wish(Change change, std::vector<std::string> streams = {});
  void work();
  void carryOut(StreamPlayer& player, const Wish& wanted);
  void tellTrouble(std::uint64_t station, const std::string& text);

  SocketPort& sockets_;
  EventLoop& loop_;
  const VlcLibrary::Output output_;
  const Patience patience_;
  QObject turn_;
  std::unique_ptr<StreamSearch> search_;
  std::atomic<int> progress_ = 0;

  std::mutex mutex_;
  std::condition_variable wake_;
  // Counts the stations that were opened and stopped; only the latest one's progress is told.
  std::uint64_t station_ = 0;
  std::optional<Wish> wish_;
  std::optional<int> volume_;
  bool ends_ = false;
  std::thread worker_;
};

}  // namespace kelvaron
