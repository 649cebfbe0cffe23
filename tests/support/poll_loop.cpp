#include "tests/support/poll_loop.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <vector>

#ifdef _WIN32
#include <winsock2.h>

#include <thread>
#else
#include <poll.h>
#endif

namespace kelvaron {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

#ifdef _WIN32
using PollNumber = SOCKET;

static int pollSystem(std::vector<pollfd>& polled, int wait) {
  if (!polled.empty()) return ::WSAPoll(polled.data(), static_cast<ULONG>(polled.size()), wait);
  std::this_thread::sleep_for(milliseconds(wait));
  return 0;
}
#else
using PollNumber = int;

static int pollSystem(std::vector<pollfd>& polled, int wait) {
  return ::poll(polled.data(), polled.size(), wait);
}
#endif

struct PollLoop::State {
  struct Watched {
    int descriptor;
    short events;
    std::function<void()> ready;
    bool ended = false;
    std::uint64_t lastTurn = 0;  // the turn that called it last
  };
  using TimerKey = std::pair<steady_clock::time_point, std::uint64_t>;

  std::map<std::uint64_t, std::shared_ptr<Watched>> watches;
  std::map<TimerKey, std::shared_ptr<std::function<void()>>> timers;
  std::uint64_t nextId = 1;
  std::uint64_t turn = 0;
};

/// Ends what it watches, unless the loop has gone.
class PollLoop::Watch : public LoopWatch {
 public:
  Watch(std::weak_ptr<State> state, std::function<void(State&)> end)
      : state_(std::move(state)), end_(std::move(end)) {}
  ~Watch() override {
    if (const auto state = state_.lock()) end_(*state);
  }

 private:
  std::weak_ptr<State> state_;
  std::function<void(State&)> end_;
};

PollLoop::PollLoop() : state_(std::make_shared<State>()) {}

std::unique_ptr<LoopWatch> PollLoop::watch(int descriptor, Readiness readiness,
                                           std::function<void()> ready) {
  const std::uint64_t id = state_->nextId++;
  const short events = readiness == Readiness::readable ? POLLIN : POLLOUT;
  state_->watches.emplace(
      id, std::make_shared<State::Watched>(State::Watched{descriptor, events, std::move(ready)}));
  return std::make_unique<Watch>(state_, [id](State& state) {
    // Its destruction may destroy further watches.
    const auto ended = state.watches.extract(id);
    ended.mapped()->ended = true;
  });
}

std::unique_ptr<LoopWatch> PollLoop::after(milliseconds delay, std::function<void()> due) {
  const State::TimerKey key(steady_clock::now() + delay, state_->nextId++);
  state_->timers.emplace(key, std::make_shared<std::function<void()>>(std::move(due)));
  return std::make_unique<Watch>(
      state_, [key](State& state) { const auto ended = state.timers.extract(key); });
}

void PollLoop::runOnce(milliseconds maxWait) {
  const std::uint64_t idLimit = state_->nextId;
  milliseconds wait = std::max(maxWait, milliseconds(0));
  if (!state_->timers.empty()) {
    const auto left = state_->timers.begin()->first.first - steady_clock::now();
    wait = std::clamp(std::chrono::ceil<milliseconds>(left), milliseconds(0), wait);
  }
  callReady(wait);
  callDue(idLimit);
}

bool PollLoop::runUntil(const std::function<bool()>& done, milliseconds limit) {
  // So that a condition which another thread brings about is seen soon.
  constexpr milliseconds kLongestWait(10);
  const auto end = steady_clock::now() + limit;
  while (!done()) {
    const auto left = std::chrono::ceil<milliseconds>(end - steady_clock::now());
    if (left <= milliseconds(0)) return false;
    runOnce(std::min(left, kLongestWait));
  }
  return true;
}

void PollLoop::callReady(milliseconds wait) {
  std::vector<pollfd> polled;
  std::vector<std::shared_ptr<State::Watched>> watched;
  for (const auto& [id, watch] : state_->watches) {
    polled.push_back({static_cast<PollNumber>(watch->descriptor), watch->events, 0});
    watched.push_back(watch);
  }
  constexpr milliseconds kDay(86'400'000);  // within the range of poll's argument
  const int count = pollSystem(polled, static_cast<int>(std::min(wait, kDay).count()));
  if (count < 0 && errno != EINTR) throw std::system_error(errno, std::generic_category(), "poll");
  if (count <= 0) return;

  const std::uint64_t turn = ++state_->turn;
  for (std::size_t index = 0; index < polled.size(); ++index) {
    State::Watched& watch = *watched[index];
    // A turn begun inside a handler of this one has already looked at what it called.
    if (polled[index].revents == 0 || watch.ended || watch.lastTurn > turn) continue;
    if ((polled[index].revents & POLLNVAL) != 0) {
      throw std::logic_error("a watched descriptor is not open");
    }
    watch.lastTurn = turn;
    watch.ready();
  }
}

void PollLoop::callDue(std::uint64_t idLimit) {
  const auto now = steady_clock::now();
  for (;;) {
    // Looked up anew each time: a handler may have ended, added or, in a turn of its own, run some.
    const auto next = std::find_if(state_->timers.begin(), state_->timers.end(),
                                   [&](const auto& timer) { return timer.first.second < idLimit; });
    if (next == state_->timers.end() || next->first.first > now) return;
    const auto due = state_->timers.extract(next);
    (*due.mapped())();
  }
}

}  // namespace kelvaron
