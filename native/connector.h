// Brings one outgoing connection about: look-up, then the host's addresses in turn.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/liveness.h"
#include "native/endpoint.h"
#include "native/name_lookup.h"
#include "native/sockets.h"
#include "platform/event_loop.h"

namespace kelvaron {

struct ConnectSettings {
  /// For the look-up and all addresses together. An address that does not answer gets an even
  /// share of what is left, the last one all of it.
  std::chrono::milliseconds timeout{32'000};
  LookUp lookUp = systemLookUp;
};

/// One attempt to connect; destroying it gives it up.
class Connector {
 public:
  /// Either a connected, non-blocking descriptor or the error of the last address tried.
  using Done = std::function<void(SocketDescriptor connection, std::optional<SocketError> error)>;

  /// `done` is called once, never from within the constructor; it may destroy this object.
  Connector(EventLoop& loop, const std::string& host, std::uint16_t port,
            const ConnectSettings& settings, Done done);

 private:
  void resolved(Resolution resolution);
  void tryNext();
  void writable();
  void attemptFailed(int errnoValue);
  void finish(std::optional<SocketError> error);

  EventLoop& loop_;
  Done done_;
  std::chrono::steady_clock::time_point deadline_;
  std::vector<Endpoint> endpoints_;
  std::size_t next_ = 0;
  std::optional<SocketError> lastError_;
  Liveness liveness_;
  SocketDescriptor descriptor_;
  std::unique_ptr<NameLookUp> lookUp_;
  std::unique_ptr<LoopWatch> overallTimer_;
  std::unique_ptr<LoopWatch> attemptTimer_;
  std::unique_ptr<LoopWatch> watch_;
};

}  // namespace kelvaron
