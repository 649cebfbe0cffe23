// One client's connection: cuts what arrives into lines, slows floods down, and holds what waits to
// be sent within bounds.
#pragma once

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "server/chunk.h"
#include "server/clock.h"
#include "server/settings.h"

namespace kelvaron::server {

class Connection;

/// Whom a connection tells. It outlives the connection, or calls `detach` before.
class ConnectionOwner {
 public:
  virtual ~ConnectionOwner() = default;
  /// How long a line has to wait before it may be handled; zero when it is now, and is paid for.
  virtual Clock::duration waitFor(Connection& connection, std::string_view line) = 0;
  /// A line without its line end, control characters other than TAB already blanked; never empty.
  virtual void onLine(Connection& connection, std::string_view line) = 0;
  /// A line is longer than the limit. From now on the connection drops what it reads.
  virtual void onLineTooLong(Connection& connection) = 0;
  /// The connection is closed; told once, never from within a call to the connection.
  virtual void onClosed(Connection& connection, std::string_view why) = 0;
  /// There is something to send: the owner calls `flush` soon.
  virtual void onUnsent(std::shared_ptr<Connection> connection) = 0;
  /// The system has taken so many bytes for the client.
  virtual void onWritten(std::size_t bytes) = 0;
};

class Connection : public std::enable_shared_from_this<Connection> {
 public:
  enum class Kind { lines, userList };

  /// `settings` and `owner` must stay until the connection is closed and told so, or detached.
  /// What it holds is counted in `held`.
  Connection(asio::ip::tcp::socket socket, std::uint64_t id, const Settings& settings,
             ConnectionOwner& owner, Held held);
  ~Connection() { forgetAll(); }

  /// Begins to read.
  void start();

  /// Puts lines in the queue, joined to those before where they can be. A user list takes the place
  /// of one that still waits. A client over the limit of what may wait is dropped.
  void send(const Piece& lines, Kind kind = Kind::lines);
  /// As above, lines for this client alone.
  void send(std::string lines);
  /// Gives the socket what waits, in as few writes as it takes.
  void flush();

  /// Closes at once, and drops what waits; the owner is told `why` in a later turn of the loop.
  void close(std::string why);
  /// Closes once the client has taken all that waits for it; nothing of what it sends counts any
  /// more. Who takes nothing stays for the owner to close.
  void finish();
  /// Closes without telling the owner.
  void detach();

  /// Whether something has waited for `stall_timeout_ms` of which the client took nothing.
  bool isStalled(Clock::time_point now) const;
  /// Whether nothing waits here, and the client's machine has all that was sent.
  bool isAllTaken();
  bool isClosed() const { return closed_; }
  /// Whether the client has ended its side, perhaps behind lines that are still unread here.
  bool peerHasClosed();
  /// Whether lines wait here for their turn.
  bool isBehind() const { return pausing_; }
  std::uint64_t id() const { return id_; }
  /// Bytes that are kept here for the client, shared ones too.
  std::size_t kept() const;
  /// The client's address as the server sees it; an IPv4 address in IPv6 form in its own form.
  const std::string& address() const { return address_; }

 private:
  struct Waiting {
    Piece lines;
    Kind kind;
  };

  void awaitBytes();
  void read();
  void handleLines();
  void pause(Clock::duration time);
  void dropInput();
  void consume(std::size_t written);
  void giveUpSending();
  void push(const Piece& lines, Kind kind);
  void pop();
  void askFlush();
  void countInput();
  void forgetAll();

  asio::ip::tcp::socket socket_;
  asio::steady_timer pause_;
  std::uint64_t id_;
  const Settings& settings_;
  ConnectionOwner* owner_;
  std::string address_;

  Held held_;

  std::string input_;         // from the start of the first unfinished line
  std::size_t searched_ = 0;  // no line end begins before this place in input_
  std::size_t inputHeld_ = 0;
  bool pausing_ = false;  // the first line in input_ waits for its turn
  bool dropping_ = false;

  std::deque<Waiting> queue_;
  std::size_t frontSent_ = 0;  // bytes of the queue's front that the socket has
  std::size_t queued_ = 0;     // what the queue costs in bytes, user lists left out
  std::size_t listsWaiting_ = 0;
  bool flushAsked_ = false;
  bool blocked_ = false;  // the socket takes no more for now
  Clock::time_point progressAt_;
  bool gone_ = false;  // it takes nothing any more
  bool closed_ = false;
  bool finishing_ = false;
};

}  // namespace kelvaron::server
