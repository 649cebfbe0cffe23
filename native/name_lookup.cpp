#include "native/name_lookup.h"

#include <cerrno>
#include <thread>
#include <utility>

namespace kelvaron {

NameLookUp::NameLookUp(EventLoop& loop, LookUp lookUp, const std::string& host, std::uint16_t port,
                       Done done)
    : wakeUp_(std::make_shared<WakeUp>()), done_(std::move(done)) {
  std::promise<Resolution> promise;
  outcome_ = promise.get_future();
  std::thread([wakeUp = wakeUp_, promise = std::move(promise), lookUp = std::move(lookUp), host,
               port]() mutable {
    try {
      promise.set_value(lookUp(host, port));
    } catch (const std::exception& problem) {
      promise.set_value({{}, SocketError{systemSocketError(ENOMEM).number, problem.what()}});
    }
    wakeUp->signal();
  }).detach();
  watch_ = loop.watch(wakeUp_->descriptor(), EventLoop::Readiness::readable,
                      liveness_.guard([this] { finished(); }));
}

void NameLookUp::finished() {
  watch_.reset();
  const Done done = std::move(done_);
  done(outcome_.get());
}

}  // namespace kelvaron
