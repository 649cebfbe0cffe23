// Loaded into Doomsday's game, whose start can wait for ever before a turning ring: it starts a
// thread that loads, only then clears the mark by which that thread tells that it is through, and
// then waits for the mark in a loop of events. A thread that is quicker is never heard of, which on
// a machine at work one start in ten meets. With this, the thread doesn't begin before the loop
// does.
#include <dlfcn.h>

#include <chrono>
#include <functional>
#include <future>
#include <optional>
#include <utility>

#define KELVARON_START_THREAD "_Z15Sys_StartThreadSt8functionIFiPvEES0_PFv21systhreadexitstatus_eE"
#define KELVARON_EXEC_LOOP "_ZN10QEventLoop4execE6QFlagsINS_17ProcessEventsFlagEE"

namespace kelvaron::engines {
namespace {

using Work = std::function<int(void*)>;
using Ended = void (*)(int status);

/// Whoever starts threads in yet another way, as a later Doomsday may, loses no more than that.
constexpr std::chrono::seconds kLongest(2);

/// Kept when the loop of events begins in the thread that has started the work.
thread_local std::optional<std::promise<void>> loopBegins;

}  // namespace

void* startThread(Work work, void* parameter, Ended ended) __asm__(KELVARON_START_THREAD);
int execLoop(void* loop, int flags) __asm__(KELVARON_EXEC_LOOP);

void* startThread(Work work, void* parameter, Ended ended) {
  static const auto original =
      reinterpret_cast<decltype(&startThread)>(::dlsym(RTLD_NEXT, KELVARON_START_THREAD));
  // Nobody waits for a thread that doesn't tell its end.
  if (ended == nullptr) return original(std::move(work), parameter, ended);
  const std::shared_future<void> begun = loopBegins.emplace().get_future().share();
  const Work waiting = [work = std::move(work), begun](void* given) {
    begun.wait_for(kLongest);
    return work(given);
  };
  return original(waiting, parameter, ended);
}

int execLoop(void* loop, int flags) {
  static const auto original =
      reinterpret_cast<decltype(&execLoop)>(::dlsym(RTLD_NEXT, KELVARON_EXEC_LOOP));
  if (loopBegins) loopBegins->set_value();
  loopBegins.reset();
  return original(loop, flags);
}

}  // namespace kelvaron::engines
