// The TCP socket that forms work with: connect, listen, send, read what has arrived, close.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "base/non_copyable.h"

namespace kelvaron {

enum class SocketState { closed, listening, connecting, connected, peerClosing, failed };

/// A TCP socket driven by the event loop. All calls and events are on the loop's thread; no event
/// is raised from within a call. A handler may call anything, `Close` and the destructor too.
class Socket : NonCopyable {
 public:
  virtual ~Socket() = default;

  /// Begins to connect; the outcome comes as the event `onConnect` or `onError`.
  /// Faults: 40020 when the socket is not closed, 10049 when the host is empty.
  virtual void Connect(const std::string& host, std::uint16_t port) = 0;
  /// Listens on all addresses (port 0: any free one). Faults: 40020 when the socket is not closed,
  /// 10048 when the port is in use, else the system's error as 10000-family number where it has
  /// one.
  virtual void Listen(std::uint16_t port) = 0;
  /// From within `onConnectionRequest` of a listening socket: this closed socket takes the
  /// connection over and is connected at once, without `onConnect`. `requestId` is what that event
  /// gave; the listening socket may close and take it itself. A connection that nobody took when
  /// the event ends is closed.
  /// Faults: 40020 when this socket is not closed, 5 when no such connection waits.
  virtual void Accept(int requestId) = 0;
  /// Takes all bytes to be sent in order. Fault 40006 when the socket is not connected.
  virtual void SendData(std::string_view bytes) = 0;
  /// As `SendData`, but handed to the system before the call returns. Returns whether the system
  /// took all of it: then no `onSendComplete` follows for it, and more can be sent within this
  /// turn. Otherwise the rest waits, and the event follows.
  virtual bool SendNow(std::string_view bytes) = 0;
  /// All that has arrived and was not read yet; empty if nothing has. After the other side's end
  /// and after a failure it still gives what came before, until `Close` drops it.
  virtual std::string GetData() = 0;
  /// Ends the connection or the listening, at once and without an event. What `SendData` took is
  /// still delivered by the system where it fits its buffers. Never faults.
  virtual void Close() = 0;

  virtual SocketState State() const = 0;
  /// Local address in dotted decimal: that of the connection, else of this machine's first
  /// address that is not loopback, else "127.0.0.1". Of a connection over IPv6, its IPv6 text.
  virtual std::string LocalIP() const = 0;
  /// The port bound locally; 0 before `Listen` and before a connection is there.
  virtual std::uint16_t LocalPort() const = 0;

  /// Text protocols: a tail that does not end in a line feed is held back for at most this long
  /// before it counts as arrived, counted from its first byte. Zero, the default, holds nothing
  /// back. The setting outlives `Close`.
  virtual void HoldBackUnfinishedLine(std::chrono::milliseconds limit) = 0;

  std::function<void()> onConnect;
  std::function<void(int requestId)> onConnectionRequest;
  /// More can be read with `GetData` than before; raised at most once a turn of the loop, and not
  /// again for the same bytes when they are left unread. Leaving very many unread makes the other
  /// side wait.
  std::function<void()> onDataArrival;
  /// All that was given to `SendData` has been handed to the system.
  std::function<void()> onSendComplete;
  /// The other side closed the connection in good order, and all it sent has been raised.
  std::function<void()> onClose;
  /// The connection failed: number (10061 refused, 10060 timed out, 10054 reset, 11001 unknown
  /// host, ...) and a description for people. The socket is `failed` until `Close`.
  std::function<void(int number, const std::string& description)> onError;
};

/// Makes sockets.
class SocketPort : NonCopyable {
 public:
  virtual ~SocketPort() = default;
  virtual std::unique_ptr<Socket> makeSocket() = 0;
};

}  // namespace kelvaron
