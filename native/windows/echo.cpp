#include "native/echo.h"

#include <future>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "base/code_page.h"
#include "base/liveness.h"
#include "native/socket_headers.h"
#include "native/wake_up.h"

namespace kelvaron {
namespace {

using std::chrono::milliseconds;

std::string systemWords(DWORD error) {
  return fromUtf8(std::system_category().message(static_cast<int>(error)));
}

/// Waits for the answer; on a thread of its own.
EchoOutcome ask(std::uint32_t address, const std::string& data, milliseconds timeOut) {
  const HANDLE icmp = ::IcmpCreateFile();
  if (icmp == INVALID_HANDLE_VALUE) {
    return {EchoOutcome::Kind::refused, 0, systemWords(::GetLastError())};
  }
  // One answer with the data, room for an error, and for what the system keeps of the request.
  constexpr std::size_t kStatusRoom = 16;
  std::vector<char> answer(sizeof(ICMP_ECHO_REPLY) + data.size() + 8 + kStatusRoom);
  std::string sent = data;
  const DWORD count = ::IcmpSendEcho(icmp, address, sent.data(), static_cast<WORD>(sent.size()),
                                     nullptr, answer.data(), static_cast<DWORD>(answer.size()),
                                     static_cast<DWORD>(timeOut.count()));
  const DWORD error = count == 0 ? ::GetLastError() : 0;
  ::IcmpCloseHandle(icmp);
  if (count == 0) {
    if (error == IP_REQ_TIMED_OUT) return {};
    return {EchoOutcome::Kind::refused, 0, systemWords(error)};
  }
  const auto* const reply = reinterpret_cast<const ICMP_ECHO_REPLY*>(answer.data());
  if (reply->Status != IP_SUCCESS) return {};
  return {EchoOutcome::Kind::replied, reply->RoundTripTime, {}};
}

class ThreadEcho final : public Echo {
 public:
  ThreadEcho(EventLoop& loop, std::uint32_t address, std::string_view data, milliseconds timeOut,
             EchoPort::Done done)
      : done_(std::move(done)) {
    if (address == 0) {
      timer_ = loop.after(milliseconds(0), [this] { finish({}); });
      return;
    }
    try {
      const auto wakeUp = std::make_shared<WakeUp>();
      std::promise<EchoOutcome> promise;
      outcome_ = promise.get_future();
      wakeUp_ = wakeUp;
      std::thread([wakeUp, promise = std::move(promise), address, text = std::string(data),
                   timeOut]() mutable {
        promise.set_value(ask(address, text, timeOut));
        wakeUp->signal();
      }).detach();
      watch_ = loop.watch(wakeUp_->descriptor(), EventLoop::Readiness::readable,
                          [this] { finish(outcome_.get()); });
      timer_ = loop.after(timeOut, [this] { finish({}); });
    } catch (const std::system_error& problem) {
      const EchoOutcome refused{EchoOutcome::Kind::refused, 0, fromUtf8(problem.what())};
      timer_ = loop.after(milliseconds(0), [this, refused] { finish(refused); });
    }
  }

 private:
  void finish(const EchoOutcome& outcome) {
    watch_.reset();
    timer_.reset();
    const auto done = std::move(done_);  // it may destroy this object
    done(outcome);
  }

  EchoPort::Done done_;
  std::shared_ptr<WakeUp> wakeUp_;
  std::future<EchoOutcome> outcome_;
  std::unique_ptr<LoopWatch> watch_;
  std::unique_ptr<LoopWatch> timer_;
};

class WindowsEcho final : public EchoPort {
 public:
  explicit WindowsEcho(EventLoop& loop) : loop_(loop) {}

  std::unique_ptr<Echo> send(std::uint32_t address, std::string_view data, milliseconds timeOut,
                             Done done) override {
    return std::make_unique<ThreadEcho>(loop_, address, data, timeOut, std::move(done));
  }

 private:
  EventLoop& loop_;
};

}  // namespace

std::unique_ptr<EchoPort> makeEcho(EventLoop& loop) { return std::make_unique<WindowsEcho>(loop); }

}  // namespace kelvaron
