// Stands in for a game engine: records how it was started, then does what its plan says.
//
// Started as FOLDER/NAME (a link will do), it writes FOLDER/NAME.started, which comes to be whole:
// open descriptors, the working folder, whether the input is at its end, whether the session is its
// own, whether the signals are the default, and the arguments, one a line, control characters as
// <0A>. FOLDER/NAME.plan, if there is one, holds a step a line: see `act`.
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <span>
#include <string>
#include <thread>

#include "tests/engines/doomsday/loop.h"

namespace {

namespace fs = std::filesystem;

std::string openDescriptors() {
  constexpr int kMostDescriptors = 1024;
  std::string numbers;
  for (int number = 0; number < kMostDescriptors; ++number) {
    if (::fcntl(number, F_GETFD) >= 0) numbers += ' ' + std::to_string(number);
  }
  return numbers;
}

bool signalsAreDefault() {
  sigset_t blocked;
  ::sigprocmask(SIG_SETMASK, nullptr, &blocked);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGCHLD}) {
    struct sigaction action {};
    ::sigaction(number, nullptr, &action);
    if (action.sa_handler != SIG_DFL || ::sigismember(&blocked, number) == 1) return false;
  }
  return true;
}

std::string inOneLine(std::string_view argument) {
  std::string line;
  for (const char character : argument) {
    const auto byte = static_cast<unsigned char>(character);
    std::array<char, 8> code{};
    std::snprintf(code.data(), code.size(), "<%02X>", byte);
    line += byte < ' ' ? std::string(code.data()) : std::string(1, character);
  }
  return line;
}

void record(const std::string& program, std::span<char*> arguments) {
  const std::string descriptors = openDescriptors();  // before there is one more
  const std::string unfinished = program + ".unfinished";
  char byte = 0;
  std::ofstream file(unfinished, std::ios::binary);
  file << "descriptors" << descriptors << '\n';
  file << "folder " << fs::current_path().string() << '\n';
  file << "input " << (::read(STDIN_FILENO, &byte, 1) == 0 ? "at its end" : "open") << '\n';
  file << "session " << (::getsid(0) == ::getpid() ? "own" : "shared") << '\n';
  file << "signals " << (signalsAreDefault() ? "default" : "changed") << '\n';
  for (const char* argument : arguments) file << inOneLine(argument) << '\n';
  file.close();
  fs::rename(unfinished, program + ".started");
}

/// Leaves the mark as soon as the signal isn't missed.
void awaitSignal(int number, const fs::path& mark) {
  sigset_t signals;
  ::sigemptyset(&signals);
  ::sigaddset(&signals, number);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  std::ofstream(mark).close();
  ::sigwait(&signals, &number);
}

std::atomic_bool loaded = false;

/// As Doomsday does, while the machine is at work: the mark is cleared long after the thread began.
void load() {
  ::startThread([](void*) { return 0; }, nullptr, [](int) { loaded = true; });
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  loaded = false;
  ::waitInLoop(&loaded, 0);
  std::cout << (loaded ? "loaded" : "waits for ever") << std::endl;
  if (!loaded) std::exit(EXIT_FAILURE);
}

void act(const std::string& step, const std::string& value, const fs::path& folder) {
  if (step == "say") std::cout << value << std::endl;
  if (step == "warn") std::cerr << value << std::endl;
  if (step == "sleep") std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(value)));
  if (step == "mark") std::ofstream(folder / value) << "done\n";
  if (step == "kill") ::raise(std::stoi(value));
  if (step == "await") awaitSignal(std::stoi(value), folder / "awaiting");
  if (step == "load") load();
  if (step == "exit") std::exit(std::stoi(value));
}

}  // namespace

int main(int count, char** values) {
  const std::string program = values[0];
  record(program, std::span<char*>(values + 1, static_cast<std::size_t>(count - 1)));
  std::ifstream plan(program + ".plan");
  for (std::string line; std::getline(plan, line);) {
    const std::size_t blank = std::min(line.find(' '), line.size());
    act(line.substr(0, blank), line.substr(std::min(blank + 1, line.size())),
        fs::path(program).parent_path());
  }
}
