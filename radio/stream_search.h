// From the address of a station to the addresses of its streams.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_loop.h"
#include "platform/socket.h"

namespace kelvaron {

/// Fetches a station's playlist over plain HTTP, through redirections and playlists that lead to
/// other ones, and finds the streams in it. Destroying it ends the search.
class StreamSearch {
 public:
  /// How long a search may take, redirections included.
  static constexpr std::chrono::milliseconds kPatience{10'000};

  /// Gives the streams in their order: the address itself where it is no playlist or can't be
  /// looked into, none where nobody answers, the answer is a refusal, or more than five pages lead
  /// to each other. Of a page the first 64 KiB count.
  using Done = std::function<void(std::vector<std::string> streams)>;

  /// `done` is called once, never from within the constructor; it may destroy this object.
  StreamSearch(SocketPort& sockets, EventLoop& loop, std::string address, Done done,
               std::chrono::milliseconds patience = kPatience);

 private:
  void fetch(const std::string& address);
  void look(bool complete);
  void lookIntoPage(std::string_view page, bool complete);
  void found(std::vector<std::string> streams);
  void finish(std::vector<std::string> streams);

  Done done_;
  std::string address_;
  std::string received_;
  int hops_ = 0;
  std::unique_ptr<Socket> socket_;
  std::unique_ptr<LoopWatch> patience_;
};

}  // namespace kelvaron
