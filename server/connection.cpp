// The socket's side of a client. All writes and reads are non-blocking calls made when the socket
// is ready, so a connection that is idle costs no buffer.
#include "server/connection.h"

#include <linux/sockios.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <asio/post.hpp>
#include <span>
#include <utility>

#include "server/address.h"
#include "server/text.h"

namespace kelvaron::server {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kReadSize = 16'384;
// What an entry of the queue takes besides its bytes: a place in the queue, and the counted text.
constexpr std::size_t kEntryCost = 128;
constexpr std::size_t kBuffersPerWrite = 64;  // what the system takes in one call of Asio's
// Room for the list of some thousand users, so that a list goes to the socket in one piece.
constexpr int kSendBuffer = 262'144;
// A machine that is gone without a word is noticed after about these seconds.
constexpr int kIdleSeconds = 30;
constexpr int kProbeSeconds = 10;
constexpr int kProbes = 3;

/// A numeric option of TCP that Asio has no name for.
class TcpOption {
 public:
  TcpOption(int name, int value) : name_(name), value_(value) {}
  template <class Protocol>
  int level(const Protocol& /*tcp*/) const {
    return IPPROTO_TCP;
  }
  template <class Protocol>
  int name(const Protocol& /*tcp*/) const {
    return name_;
  }
  template <class Protocol>
  const void* data(const Protocol& /*tcp*/) const {
    return &value_;
  }
  template <class Protocol>
  std::size_t size(const Protocol& /*tcp*/) const {
    return sizeof value_;
  }

 private:
  int name_;
  int value_;
};

// Options make a connection better, none is needed: a system that refuses one still serves.
void tune(asio::ip::tcp::socket& socket) {
  std::error_code ignored;
  socket.set_option(asio::ip::tcp::no_delay(true), ignored);
  socket.set_option(asio::socket_base::send_buffer_size(kSendBuffer), ignored);
  socket.set_option(asio::socket_base::keep_alive(true), ignored);
  socket.set_option(TcpOption(TCP_KEEPIDLE, kIdleSeconds), ignored);
  socket.set_option(TcpOption(TCP_KEEPINTVL, kProbeSeconds), ignored);
  socket.set_option(TcpOption(TCP_KEEPCNT, kProbes), ignored);
  socket.set_option(TcpOption(TCP_USER_TIMEOUT, (kIdleSeconds + kProbeSeconds * kProbes) * 1000),
                    ignored);
}

}  // namespace

Connection::Connection(asio::ip::tcp::socket socket, std::uint64_t id, const Settings& settings,
                       ConnectionOwner& owner, Held held)
    : socket_(std::move(socket)),
      pause_(socket_.get_executor()),
      id_(id),
      settings_(settings),
      owner_(&owner),
      address_(remoteAddress(socket_)),
      held_(std::move(held)),
      progressAt_(Clock::now()) {}

void Connection::start() {
  tune(socket_);
  std::error_code error;
  socket_.non_blocking(true, error);
  if (error) return close(error.message());
  awaitBytes();
}

void Connection::awaitBytes() {
  socket_.async_wait(asio::ip::tcp::socket::wait_read,
                     [self = shared_from_this()](std::error_code error) {
                       if (self->closed_) return;
                       if (error) return self->close(error.message());
                       self->read();
                     });
}

void Connection::read() {
  std::array<char, kReadSize> block;
  std::error_code error;
  const std::size_t count = socket_.read_some(asio::buffer(block), error);
  if (error == asio::error::would_block) return awaitBytes();
  if (error == asio::error::eof) return close("closed by the client");
  if (error) return close(error.message());
  if (dropping_) return awaitBytes();
  input_.append(block.data(), count);
  handleLines();
}

void Connection::handleLines() {
  const auto limit = static_cast<std::size_t>(settings_.lineLimit);
  std::size_t start = 0;
  std::string line;
  while (!closed_ && !dropping_) {
    const std::size_t end = input_.find(kLineEnd, std::max(start, searched_));
    if ((end == std::string::npos ? input_.size() : end) - start > limit) {
      dropInput();
      owner_->onLineTooLong(*this);
      break;
    }
    if (end == std::string::npos) {
      input_ = input_.substr(start);  // in a buffer of its own size
      searched_ = input_.empty() ? 0 : input_.size() - 1;
      break;
    }
    line.assign(input_, start, end - start);
    cleanLine(line);
    if (const Clock::duration wait = owner_->waitFor(*this, line); wait > Clock::duration::zero()) {
      input_.erase(0, start);
      searched_ = 0;
      countInput();
      return pause(wait);
    }
    start = end + kLineEnd.size();
    if (!line.empty()) owner_->onLine(*this, line);
  }
  countInput();
  if (!closed_) awaitBytes();
}

// Nothing is read meanwhile: the rest waits in the client's own system.
void Connection::pause(Clock::duration time) {
  pausing_ = true;
  pause_.expires_after(time);
  pause_.async_wait([self = shared_from_this()](std::error_code error) {
    if (self->closed_ || error) return;
    self->pausing_ = false;
    self->handleLines();
  });
}

void Connection::dropInput() {
  dropping_ = true;
  input_ = {};
  searched_ = 0;
}

void Connection::send(const Piece& lines, Kind kind) {
  if (closed_ || gone_) return;
  if (kind == Kind::userList) {
    // A list that the socket has begun to take must go out whole; one behind it need not.
    if (listsWaiting_ > 0) {
      const auto first = queue_.begin() + (frontSent_ > 0 ? 1 : 0);
      const auto isList = [](const Waiting& waiting) { return waiting.kind == Kind::userList; };
      const auto kept = std::remove_if(first, queue_.end(), isList);
      const auto removed = static_cast<std::size_t>(queue_.end() - kept);
      listsWaiting_ -= removed;
      *held_ -= removed * kEntryCost;
      queue_.erase(kept, queue_.end());
    }
    ++listsWaiting_;
    push(lines, kind);
  } else if (!queue_.empty() && queue_.back().lines.chunk == lines.chunk &&
             queue_.back().lines.end == lines.begin) {
    queue_.back().lines.end = lines.end;
    queued_ += lines.size();
  } else {
    push(lines, kind);
    queued_ += lines.size() + kEntryCost;
  }
  askFlush();
}

void Connection::send(std::string lines) {
  if (closed_ || gone_) return;
  if (!queue_.empty() && queue_.back().kind == Kind::lines) {
    Piece& last = queue_.back().lines;
    if (last.chunk.use_count() == 1 && last.end == last.chunk->text().size() &&
        last.chunk->takes(lines.size())) {
      last.chunk->append(lines);
      last.end += lines.size();
      queued_ += lines.size();
      return askFlush();
    }
  }
  const std::size_t size = lines.size();
  send({std::make_shared<Chunk>(std::move(lines), held_), 0, size});
}

void Connection::askFlush() {
  if (queued_ > static_cast<std::size_t>(settings_.queueLimit)) {
    return close("too much waits for a client that doesn't read");
  }
  if (blocked_ || flushAsked_) return;
  flushAsked_ = true;
  owner_->onUnsent(shared_from_this());
}

void Connection::push(const Piece& lines, Kind kind) {
  queue_.push_back({lines, kind});
  *held_ += kEntryCost;
}

void Connection::pop() {
  queue_.pop_front();
  *held_ -= kEntryCost;
}

void Connection::flush() {
  flushAsked_ = false;
  if (blocked_) return;
  std::array<asio::const_buffer, kBuffersPerWrite> buffers;
  while (!closed_ && !blocked_ && !queue_.empty()) {
    const std::size_t count = std::min(queue_.size(), buffers.size());
    for (std::size_t i = 0; i < count; ++i) {
      const Piece& lines = queue_[i].lines;
      buffers[i] = asio::buffer(lines.chunk->text().data() + lines.begin, lines.size());
    }
    buffers[0] += frontSent_;
    std::error_code error;
    const std::size_t written = socket_.write_some(std::span(buffers.data(), count), error);
    if (error && error != asio::error::would_block) return giveUpSending();
    progressAt_ = Clock::now();
    owner_->onWritten(written);
    consume(written);
    blocked_ = error == asio::error::would_block;
  }
  if (closed_) return;
  if (finishing_ && queue_.empty()) {
    std::error_code ignored;
    socket_.shutdown(asio::ip::tcp::socket::shutdown_send, ignored);
  }
  if (!blocked_) return;
  socket_.async_wait(asio::ip::tcp::socket::wait_write,
                     [self = shared_from_this()](std::error_code error) {
                       if (self->closed_) return;
                       if (error) return self->close(error.message());
                       self->blocked_ = false;
                       self->flush();
                     });
}

// The client is gone, but what it said before has its turn still; reading tells the end.
void Connection::giveUpSending() {
  gone_ = true;
  while (!queue_.empty()) pop();
  frontSent_ = 0;
  queued_ = 0;
  listsWaiting_ = 0;
}

void Connection::consume(std::size_t written) {
  frontSent_ += written;
  while (!queue_.empty() && frontSent_ >= queue_.front().lines.size()) {
    const Waiting& front = queue_.front();
    frontSent_ -= front.lines.size();
    if (front.kind == Kind::userList) {
      --listsWaiting_;
    } else {
      queued_ -= front.lines.size() + kEntryCost;
    }
    pop();
  }
}

void Connection::countInput() {
  *held_ += input_.capacity() - inputHeld_;
  inputHeld_ = input_.capacity();
}

void Connection::forgetAll() {
  while (!queue_.empty()) pop();
  input_ = {};
  countInput();
}

std::size_t Connection::kept() const {
  std::size_t bytes = inputHeld_;
  for (const Waiting& each : queue_) bytes += each.lines.size() + kEntryCost;
  return bytes;
}

bool Connection::isStalled(Clock::time_point now) const {
  return blocked_ && now - progressAt_ > std::chrono::milliseconds(settings_.stallTimeoutMs);
}

void Connection::close(std::string why) {
  if (closed_) return;
  closed_ = true;
  std::error_code ignored;
  socket_.close(ignored);
  pause_.cancel();
  forgetAll();
  asio::post(socket_.get_executor(), [self = shared_from_this(), why = std::move(why)] {
    if (self->owner_ != nullptr) self->owner_->onClosed(*self, why);
  });
}

void Connection::finish() {
  if (closed_) return;
  finishing_ = true;
  if (!dropping_) dropInput();
  flush();
}

bool Connection::isAllTaken() {
  int unsent = 0;
  return closed_ || (queue_.empty() && ::ioctl(socket_.native_handle(), SIOCOUTQ, &unsent) == 0 &&
                     unsent == 0);
}

bool Connection::peerHasClosed() {
  if (closed_) return true;
  pollfd look{socket_.native_handle(), POLLRDHUP, 0};
  return ::poll(&look, 1, 0) == 1 && (look.revents & (POLLRDHUP | POLLHUP | POLLERR)) != 0;
}

void Connection::detach() {
  owner_ = nullptr;
  close("");
}

}  // namespace kelvaron::server
