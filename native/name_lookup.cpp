#include "native/name_lookup.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>
#include <thread>
#include <utility>

namespace kelvaron {

NameLookUp::NameLookUp(EventLoop& loop, LookUp lookUp, const std::string& host, std::uint16_t port,
                       Done done)
    : signal_(std::make_shared<FileDescriptor>(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))),
      done_(std::move(done)) {
  if (!*signal_) throw std::system_error(errno, std::generic_category(), "eventfd");
  std::promise<Resolution> promise;
  outcome_ = promise.get_future();
  std::thread([signal = signal_, promise = std::move(promise), lookUp = std::move(lookUp), host,
               port]() mutable {
    try {
      promise.set_value(lookUp(host, port));
    } catch (const std::exception& problem) {
      promise.set_value({{}, SocketError{systemSocketError(ENOMEM).number, problem.what()}});
    }
    // Cannot fail: the descriptor is open as long as this thread holds it, the counter is at 0.
    static_cast<void>(::eventfd_write(signal->get(), 1));
  }).detach();
  watch_ = loop.watch(signal_->get(), EventLoop::Readiness::readable,
                      liveness_.guard([this] { finished(); }));
}

void NameLookUp::finished() {
  watch_.reset();
  const Done done = std::move(done_);
  done(outcome_.get());
}

}  // namespace kelvaron
