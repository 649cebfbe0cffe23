// The poll loop: order, re-entrancy, watches that end while handlers run.
#include "native/poll_loop.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

#include "native/file_descriptor.h"

namespace kelvaron::test {
namespace {

using namespace std::chrono_literals;

/// A pipe that is always readable and writable.
struct ReadyPipe {
  ReadyPipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0) throw std::runtime_error("pipe");
    readEnd = FileDescriptor(ends[0]);
    writeEnd = FileDescriptor(ends[1]);
    if (::write(ends[1], "x", 1) != 1) throw std::runtime_error("write");
  }
  FileDescriptor readEnd;
  FileDescriptor writeEnd;
};

TEST(PollLoop, TimersRunInOrderAndNotTooEarly) {
  PollLoop loop;
  std::string order;
  const auto begun = std::chrono::steady_clock::now();
  const auto late = loop.after(15ms, [&] { order += 'c'; });
  const auto early = loop.after(5ms, [&] { order += 'a'; });
  auto cancelled = loop.after(8ms, [&] { order += 'x'; });
  const auto next = loop.after(5ms, [&] {
    order += 'b';
    cancelled.reset();
  });
  EXPECT_TRUE(loop.runUntil([&] { return order.size() == 3; }, 5s));
  EXPECT_GE(std::chrono::steady_clock::now() - begun, 15ms);
  EXPECT_EQ(order, "abc");
  EXPECT_FALSE(loop.runOnce(1ms));
}

TEST(PollLoop, TimerThatRenewsItselfDoesNotStarveTheTurn) {
  PollLoop loop;
  int count = 0;
  std::unique_ptr<LoopWatch> timer;
  const std::function<void()> again = [&] {
    ++count;
    timer = loop.after(0ms, again);
  };
  timer = loop.after(0ms, again);
  for (int turn = 1; turn <= 3; ++turn) {
    EXPECT_TRUE(loop.runOnce(5ms));
    EXPECT_EQ(count, turn);
  }
}

TEST(PollLoop, WatchEndedByAnotherHandlerIsNotCalled) {
  PollLoop loop;
  ReadyPipe pipe;
  int calls = 0;
  std::array<std::unique_ptr<LoopWatch>, 2> watches;
  const auto makeWatch = [&](std::size_t own, EventLoop::Readiness readiness, int descriptor) {
    watches[own] = loop.watch(descriptor, readiness, [&watches, &calls, own] {
      ++calls;
      watches[1 - own].reset();
      watches[own].reset();
      EXPECT_LT(own, 2U);  // what it captured is still there
    });
  };
  makeWatch(0, EventLoop::Readiness::readable, pipe.readEnd.get());
  makeWatch(1, EventLoop::Readiness::writable, pipe.writeEnd.get());
  EXPECT_TRUE(loop.runOnce(1s));
  EXPECT_FALSE(loop.runOnce(0ms));
  EXPECT_EQ(calls, 1);
}

TEST(PollLoop, LevelTriggeredOnceATurnEvenWhenNested) {
  PollLoop loop;
  ReadyPipe pipe;
  int outer = 0;
  int inner = 0;
  std::unique_ptr<LoopWatch> added;
  const auto first = loop.watch(pipe.writeEnd.get(), EventLoop::Readiness::writable, [&] {
    if (++outer > 1) return;
    loop.runOnce(0ms);
    added = loop.watch(pipe.readEnd.get(), EventLoop::Readiness::readable, [] {});
  });
  const auto second =
      loop.watch(pipe.readEnd.get(), EventLoop::Readiness::readable, [&] { ++inner; });
  loop.runOnce(1s);
  EXPECT_EQ(outer, 2);  // itself, and once in the turn that it ran
  EXPECT_EQ(inner, 1);
  loop.runOnce(1s);
  EXPECT_EQ(inner, 2);
}

TEST(PollLoop, DueTimersReachANestedTurn) {
  PollLoop loop;
  bool second = false;
  const auto waits =
      loop.after(0ms, [&] { EXPECT_TRUE(loop.runUntil([&] { return second; }, 1s)); });
  const auto awaited = loop.after(0ms, [&] { second = true; });
  loop.runUntil([&] { return second; }, 5s);
  EXPECT_TRUE(second);
}

TEST(PollLoop, GoesOnAfterAnException) {
  PollLoop loop;
  bool later = false;
  const auto failing = loop.after(0ms, [] { throw std::runtime_error("handler"); });
  const auto next = loop.after(0ms, [&] { later = true; });
  EXPECT_THROW(loop.runUntil([&] { return later; }, 5s), std::runtime_error);
  EXPECT_TRUE(loop.runUntil([&] { return later; }, 5s));
}

TEST(PollLoop, WatchesMayOutliveIt) {
  ReadyPipe pipe;
  auto loop = std::make_unique<PollLoop>();
  const auto watch = loop->watch(pipe.readEnd.get(), EventLoop::Readiness::readable, [] {});
  const auto timer = loop->after(0ms, [] {});
  loop.reset();
}

TEST(PollLoop, ClosedDescriptorIsNotSilent) {
  PollLoop loop;
  ReadyPipe pipe;
  const auto watch = loop.watch(pipe.readEnd.get(), EventLoop::Readiness::readable, [] {});
  pipe.readEnd.reset();
  EXPECT_THROW(loop.runOnce(0ms), std::logic_error);
}

}  // namespace
}  // namespace kelvaron::test
