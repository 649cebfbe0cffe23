#include "native/native_socket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>

#include "base/scope_exit.h"
#include "native/machine.h"
#include "native/socket_error.h"
#include "native/socket_setup.h"
#include "platform/fault.h"

namespace kelvaron {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kNow(0);
constexpr milliseconds kAcceptPause(250);  // when the system has no descriptor left

bool wouldBlock(int errnoValue) {
  return errnoValue == EAGAIN || errnoValue == EWOULDBLOCK || errnoValue == EINTR;
}

/// The handler may destroy or replace itself, so it is called on a copy.
template <class Handler, class... Arguments>
void raise(const Handler& handler, const Arguments&... arguments) {
  if (!handler) return;
  const Handler kept = handler;
  kept(arguments...);
}

}  // namespace

NativeSocket::NativeSocket(EventLoop& loop, std::shared_ptr<ConnectionRequests> requests,
                           ConnectSettings settings)
    : loop_(loop), requests_(std::move(requests)), settings_(std::move(settings)) {}

NativeSocket::~NativeSocket() { NativeSocket::Close(); }

void NativeSocket::requireClosed() const {
  if (state_ != SocketState::closed) {
    throw Fault(fault_number::kWrongSocketState, "The socket is already in use");
  }
}

void NativeSocket::Connect(const std::string& host, std::uint16_t port) {
  requireClosed();
  if (host.empty()) throw Fault(socket_error_number::kAddressInvalid, "No host was given");
  connector_ = std::make_unique<Connector>(
      loop_, host, port, settings_,
      liveness_.guard([this](SocketDescriptor connection, std::optional<SocketError> error) {
        connectorDone(std::move(connection), std::move(error));
      }));
  state_ = SocketState::connecting;
}

void NativeSocket::connectorDone(SocketDescriptor connection, std::optional<SocketError> error) {
  const auto done = std::move(connector_);  // it is the caller
  if (error) return fail(*error);
  takeOver(std::move(connection));
  raise(onConnect);
}

void NativeSocket::takeOver(SocketDescriptor connection) {
  descriptor_ = std::move(connection);
  setConnectionOptions(descriptor_.get());
  const Endpoint local = localEndpoint(descriptor_.get());
  localIp_ = local.ip();
  localPort_ = local.port();
  arrivals_.setHoldBack(holdBack_ > kNow);
  state_ = SocketState::connected;
  watchArrivals();
}

void NativeSocket::Listen(std::uint16_t port) {
  requireClosed();
  descriptor_ = listenOnAllAddresses(port);
  if (!descriptor_) {
    const SocketError error = systemSocketError(errno);
    throw Fault(error.number, error.text);
  }
  localPort_ = localEndpoint(descriptor_.get()).port();
  state_ = SocketState::listening;
  watchRequests();
}

void NativeSocket::watchRequests() {
  readWatch_ = loop_.watch(descriptor_.get(), EventLoop::Readiness::readable,
                           liveness_.guard([this] { request(); }));
}

void NativeSocket::request() {
  SocketDescriptor connection = acceptOne(descriptor_.get());
  if (!connection) {
    const bool exhausted =
        errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM;
    // Else the connection was gone before it could be taken.
    if (exhausted) {
      readWatch_ = loop_.after(kAcceptPause, liveness_.guard([this] { watchRequests(); }));
    }
    return;
  }
  const int id = requests_->add(std::move(connection));
  const ScopeExit untaken([requests = requests_, id] { requests->take(id); });
  raise(onConnectionRequest, id);
}

void NativeSocket::Accept(int requestId) {
  requireClosed();
  SocketDescriptor connection = requests_->take(requestId);
  if (!connection) throw Fault(fault_number::kInvalidCall, "No such connection is waiting");
  takeOver(std::move(connection));
}

void NativeSocket::watchArrivals() {
  readWatch_ = loop_.watch(descriptor_.get(), EventLoop::Readiness::readable,
                           liveness_.guard([this] { arrivalTurn(); }));
}

/// Raises `onDataArrival` when the step made more bytes readable. Must be a turn's last deed.
template <class Step>
void NativeSocket::raiseArrivedBy(Step step) {
  const std::size_t before = arrivals_.arrived();
  step();
  if (arrivals_.arrived() > before) raise(onDataArrival);
}

void NativeSocket::arrivalTurn() {
  raiseArrivedBy([this] {
    readAvailable(kReadPerTurn);
    tendTail();
  });
}

void NativeSocket::readAvailable(std::size_t limit) {
  std::array<char, std::size_t{64} << 10U> chunk;
  for (std::size_t left = limit; left > 0;) {
    if (full() && !sendErrno_) {
      readWatch_.reset();
      return;
    }
    const auto count =
        receiveSome(descriptor_.get(), std::span(chunk).first(std::min(left, chunk.size())));
    if (count > 0) {
      const auto length = static_cast<std::size_t>(count);
      arrivals_.append({chunk.data(), length}, steady_clock::now());
      left -= length;
    } else if (count < 0 && wouldBlock(errno)) {
      return;
    } else {
      return endStream(count == 0 ? std::nullopt : std::optional(systemSocketError(errno)));
    }
  }
}

std::string NativeSocket::GetData() {
  std::string data = arrivals_.take();
  resumeReading();
  return data;
}

bool NativeSocket::full() const {
  const bool answers = holdBack_ > kNow && queue_.size() > kUnsentLimit;
  return answers || arrivals_.size() >= kUnreadLimit;
}

bool NativeSocket::readingPaused() const {
  return state_ == SocketState::connected && !readWatch_ && !endTimer_ && !sendErrno_;
}

void NativeSocket::resumeReading() {
  if (!readingPaused() || full()) return;
  watchArrivals();
  // The rest of the line may have been there all the time, and has not been looked for.
  arrivals_.renewTail(steady_clock::now());
}

void NativeSocket::HoldBackUnfinishedLine(milliseconds limit) {
  holdBack_ = std::max(limit, kNow);
  arrivals_.setHoldBack(holdBack_ > kNow);
  tailTimer_.reset();
  tendTail();
}

void NativeSocket::tendTail() {
  if (!arrivals_.hasTail() || tailTimer_) return;
  const auto left = arrivals_.tailSince() + holdBack_ - steady_clock::now();
  tailTimer_ = loop_.after(std::max(kNow, std::chrono::ceil<milliseconds>(left)),
                           liveness_.guard([this] { tailDue(); }));
}

void NativeSocket::tailDue() {
  tailTimer_.reset();
  raiseArrivedBy([this] {
    // The rest of the line may have come while the loop was busy.
    if (readWatch_) readAvailable(kReadPerTurn);
    // A pause ends with the tail's time begun anew.
    if (readingPaused()) arrivals_.renewTail(steady_clock::now());
    if (steady_clock::now() - arrivals_.tailSince() >= holdBack_) arrivals_.releaseTail();
    tendTail();
  });
}

void NativeSocket::SendData(std::string_view bytes) {
  if (state_ != SocketState::connected) {
    throw Fault(fault_number::kNotConnected, "The socket is not connected");
  }
  if (sendErrno_) return;  // the connection is lost, which is raised in the next turn
  const bool first = queue_.empty() && !sendTimer_;
  const std::size_t sent = first ? trySend(bytes) : 0;
  if (sendErrno_) return;
  queue_.append(bytes.substr(sent));
  if (!writeWatch_ && queue_.size() >= kGatherLimit) flush();
  if (!sendTimer_ && !writeWatch_ && !sendErrno_) {
    sendTimer_ = loop_.after(kNow, liveness_.guard([this] {
      sendTimer_.reset();
      if (!writeWatch_) sendTurn();
    }));
  }
}

bool NativeSocket::SendNow(std::string_view bytes) {
  if (state_ != SocketState::connected) {
    throw Fault(fault_number::kNotConnected, "The socket is not connected");
  }
  if (sendErrno_) return false;  // the connection is lost, which is raised in the next turn
  if (!queue_.empty() && !writeWatch_) flush();
  if (sendErrno_) return false;
  const std::size_t sent = queue_.empty() ? trySend(bytes) : 0;
  if (sendErrno_) return false;
  queue_.append(bytes.substr(sent));
  return queue_.empty();
}

/// Returns how many bytes the system took; fewer than given when it takes no more for now.
std::size_t NativeSocket::trySend(std::string_view bytes) {
  if (bytes.empty()) return 0;
  const auto count = sendSome(descriptor_.get(), bytes);
  if (count < 0 && !wouldBlock(errno)) sendingFailed(errno);
  const std::size_t sent = count < 0 ? 0 : static_cast<std::size_t>(count);
  if (sent < bytes.size() && !sendErrno_ && !writeWatch_) {
    writeWatch_ = loop_.watch(descriptor_.get(), EventLoop::Readiness::writable,
                              liveness_.guard([this] { sendTurn(); }));
  }
  return sent;
}

void NativeSocket::flush() {
  const std::size_t sent = trySend(queue_.pending());
  if (!sendErrno_) queue_.consume(sent);
}

void NativeSocket::sendTurn() {
  flush();
  if (sendErrno_ || !queue_.empty()) return;
  writeWatch_.reset();
  resumeReading();
  if (!sendTimer_) raise(onSendComplete);
}

void NativeSocket::sendingFailed(int errnoValue) {
  sendErrno_ = errnoValue;
  queue_.clear();
  writeWatch_.reset();
  sendTimer_.reset();
  if (state_ == SocketState::peerClosing || endTimer_) return;
  readWatch_.reset();
  endTimer_ = loop_.after(kNow, liveness_.guard([this] { readRemains(); }));
}

void NativeSocket::readRemains() {
  endTimer_.reset();
  raiseArrivedBy([this] {
    readAvailable(std::numeric_limits<std::size_t>::max());
    if (!endTimer_) endStream(std::nullopt);
  });
}

void NativeSocket::endStream(std::optional<SocketError> error) {
  readWatch_.reset();
  tailTimer_.reset();
  arrivals_.releaseTail();
  error_ = std::move(error);
  // The failing send has consumed the error, so that reading meets an end in seeming good order.
  // A broken pipe, though, is what sending meets after an end that was in good order.
  if (!error_ && sendErrno_ && *sendErrno_ != EPIPE) error_ = systemSocketError(*sendErrno_);
  endTimer_ = loop_.after(kNow, liveness_.guard([this] { ended(); }));
}

void NativeSocket::ended() {
  endTimer_.reset();
  if (const auto error = std::exchange(error_, std::nullopt)) return fail(*error);
  state_ = SocketState::peerClosing;
  raise(onClose);
}

void NativeSocket::fail(const SocketError& error) {
  dropWatches();
  descriptor_.reset();
  queue_.clear();
  state_ = SocketState::failed;
  raise(onError, error.number, error.text);
}

void NativeSocket::dropWatches() {
  liveness_.renew();
  connector_.reset();
  readWatch_.reset();
  writeWatch_.reset();
  sendTimer_.reset();
  tailTimer_.reset();
  endTimer_.reset();
}

void NativeSocket::Close() {
  const bool connection = state_ == SocketState::connected || state_ == SocketState::peerClosing;
  if (connection && !sendErrno_ && !queue_.empty()) flush();
  dropWatches();
  if (connection) closeGently(std::move(descriptor_));
  descriptor_.reset();
  queue_.clear();
  arrivals_.clear();
  sendErrno_.reset();
  error_.reset();
  localIp_.clear();
  localPort_ = 0;
  state_ = SocketState::closed;
}

std::string NativeSocket::LocalIP() const {
  return localIp_.empty() ? firstMachineAddress() : localIp_;
}

}  // namespace kelvaron
