#include "native/connector.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace kelvaron {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Connecting to a free local port can, by chance, join a socket to itself.
bool isJoinedToItself(int socket) {
  const Endpoint local = localEndpoint(socket);
  const Endpoint remote = remoteEndpoint(socket);
  return local.port() == remote.port() && local.ip() == remote.ip();
}

}  // namespace

Connector::Connector(EventLoop& loop, const std::string& host, std::uint16_t port,
                     const ConnectSettings& settings, Done done)
    : loop_(loop), done_(std::move(done)), deadline_(steady_clock::now() + settings.timeout) {
  overallTimer_ = loop_.after(settings.timeout,
                              liveness_.guard([this] { finish(systemSocketError(ETIMEDOUT)); }));
  if (const auto endpoint = numericEndpoint(host, port)) {
    endpoints_.push_back(*endpoint);
    watch_ = loop_.after(milliseconds(0), liveness_.guard([this] { tryNext(); }));
    return;
  }
  try {
    lookUp_ = std::make_unique<NameLookUp>(
        loop_, settings.lookUp, host, port,
        liveness_.guard([this](Resolution resolution) { resolved(std::move(resolution)); }));
  } catch (const std::system_error& problem) {
    lastError_ = systemSocketError(problem.code().value());
    watch_ = loop_.after(milliseconds(0), liveness_.guard([this] { tryNext(); }));
  }
}

void Connector::resolved(Resolution resolution) {
  lookUp_.reset();
  lastError_ = resolution.error ? std::move(resolution.error) : lookUpError(EAI_NONAME, 0);
  endpoints_ = std::move(resolution.endpoints);
  tryNext();
}

void Connector::tryNext() {
  watch_.reset();
  attemptTimer_.reset();
  while (next_ < endpoints_.size()) {
    const Endpoint& endpoint = endpoints_[next_++];
    descriptor_ = openStream(endpoint.address.ss_family);
    if (descriptor_ && beginToConnect(descriptor_.get(), endpoint) == 0) {
      return finish(std::nullopt);
    }
    if (errno != EINPROGRESS) {
      lastError_ = systemSocketError(errno);
      continue;
    }
    watch_ = loop_.watch(descriptor_.get(), EventLoop::Readiness::writable,
                         liveness_.guard([this] { writable(); }));
    const auto left = static_cast<int>(endpoints_.size() - next_);
    if (left > 0) {
      const auto share = (deadline_ - steady_clock::now()) / (left + 1);
      attemptTimer_ = loop_.after(std::max(milliseconds(0), std::chrono::ceil<milliseconds>(share)),
                                  liveness_.guard([this] { attemptFailed(ETIMEDOUT); }));
    }
    return;
  }
  finish(std::move(lastError_));
}

void Connector::writable() {
  int error = connectError(descriptor_.get());
  if (error == 0 && isJoinedToItself(descriptor_.get())) error = ECONNREFUSED;
  if (error != 0) return attemptFailed(error);
  finish(std::nullopt);
}

void Connector::attemptFailed(int errnoValue) {
  lastError_ = systemSocketError(errnoValue);
  tryNext();
}

void Connector::finish(std::optional<SocketError> error) {
  overallTimer_.reset();
  attemptTimer_.reset();
  watch_.reset();
  lookUp_.reset();
  SocketDescriptor connection = error ? SocketDescriptor() : std::move(descriptor_);
  const Done done = std::move(done_);
  done(std::move(connection), std::move(error));
}

}  // namespace kelvaron
