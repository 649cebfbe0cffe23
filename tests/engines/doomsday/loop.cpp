#include "tests/engines/doomsday/loop.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <utility>

using namespace std::chrono_literals;

void* startThread(std::function<int(void*)> work, void* parameter, void (*ended)(int status)) {
  std::thread([=, work = std::move(work)] { ended(work(parameter)); }).detach();
  return nullptr;
}

int waitInLoop(void* loop, int) {
  const auto end = std::chrono::steady_clock::now() + 1s;
  while (!*static_cast<std::atomic_bool*>(loop) && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(1ms);
  }
  return 0;
}
