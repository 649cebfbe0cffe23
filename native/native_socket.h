// TCP sockets of the system behind the socket port.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/liveness.h"
#include "native/arrival_buffer.h"
#include "native/connection_requests.h"
#include "native/connector.h"
#include "native/send_queue.h"
#include "native/sockets.h"
#include "platform/event_loop.h"
#include "platform/socket.h"

namespace kelvaron {

/// Everything happens in the loop's turns, in order: arrived bytes before the end of the
/// connection, whatever the end is. An exception that leaves a handler passes through the loop.
class NativeSocket : public Socket {
 public:
  /// Most bytes read in one turn, so that the loop stays responsive.
  static constexpr std::size_t kReadPerTurn = std::size_t{1} << 20U;
  /// From so many unread bytes on, reading pauses until `GetData`; the other side has to wait.
  static constexpr std::size_t kUnreadLimit = std::size_t{2} << 20U;
  /// While more than so many bytes wait to be sent on a connection of lines, nothing is read from
  /// it: whoever asks without reading the answers has to wait too.
  static constexpr std::size_t kUnsentLimit = std::size_t{1} << 20U;
  /// Bytes sent later in the turn of a first `SendData` gather up to this many before they go out.
  static constexpr std::size_t kGatherLimit = std::size_t{64} << 10U;

  NativeSocket(EventLoop& loop, std::shared_ptr<ConnectionRequests> requests,
               ConnectSettings settings = {});
  ~NativeSocket() override;

  void Connect(const std::string& host, std::uint16_t port) override;
  void Listen(std::uint16_t port) override;
  void Accept(int requestId) override;
  void SendData(std::string_view bytes) override;
  bool SendNow(std::string_view bytes) override;
  std::string GetData() override;
  void Close() override;
  SocketState State() const override { return state_; }
  std::string LocalIP() const override;
  std::uint16_t LocalPort() const override { return localPort_; }
  void HoldBackUnfinishedLine(std::chrono::milliseconds limit) override;

 private:
  void requireClosed() const;
  void connectorDone(SocketDescriptor connection, std::optional<SocketError> error);
  void takeOver(SocketDescriptor connection);

  void watchRequests();
  void request();

  void watchArrivals();
  void arrivalTurn();
  void readAvailable(std::size_t limit);
  bool full() const;
  bool readingPaused() const;
  void resumeReading();
  void tendTail();
  void tailDue();
  template <class Step>
  void raiseArrivedBy(Step step);

  std::size_t trySend(std::string_view bytes);
  void flush();
  void sendTurn();
  void sendingFailed(int errnoValue);
  void readRemains();

  void endStream(std::optional<SocketError> error);
  void ended();
  void fail(const SocketError& error);
  void dropWatches();

  EventLoop& loop_;
  std::shared_ptr<ConnectionRequests> requests_;
  ConnectSettings settings_;
  std::chrono::milliseconds holdBack_{0};

  SocketState state_ = SocketState::closed;
  std::string localIp_;
  std::uint16_t localPort_ = 0;
  ArrivalBuffer arrivals_;
  SendQueue queue_;
  std::optional<int> sendErrno_;      // sending failed; what came before that is still to be raised
  std::optional<SocketError> error_;  // how the stream ended, for `ended`

  Liveness liveness_;
  SocketDescriptor descriptor_;
  std::unique_ptr<Connector> connector_;
  std::unique_ptr<LoopWatch> readWatch_;
  std::unique_ptr<LoopWatch> writeWatch_;  // set while the system takes no more
  std::unique_ptr<LoopWatch> sendTimer_;   // set from a SendData to the end of its turn
  std::unique_ptr<LoopWatch> tailTimer_;
  std::unique_ptr<LoopWatch> endTimer_;  // set when the stream has ended and that is to be raised
};

/// Makes sockets that can accept from one another.
class NativeSocketPort final : public SocketPort {
 public:
  explicit NativeSocketPort(EventLoop& loop, ConnectSettings settings = {})
      : loop_(loop), settings_(std::move(settings)) {}

  std::unique_ptr<Socket> makeSocket() override {
    return std::make_unique<NativeSocket>(loop_, requests_, settings_);
  }

 private:
  EventLoop& loop_;
  ConnectSettings settings_;
  std::shared_ptr<ConnectionRequests> requests_ = std::make_shared<ConnectionRequests>();
};

}  // namespace kelvaron
