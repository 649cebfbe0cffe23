#include "engines/programs.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <iostream>
#include <optional>
#include <thread>
#include <vector>

namespace kelvaron::engines {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

/// How many of a program's last lines stand behind a sentence: with it, as many as Kelvaron shows.
constexpr std::size_t kLastLines = 4;

/// A game that says it has lost its host stays open; one whose user has left it ends within this.
constexpr milliseconds kUntilLost(1'500);
constexpr milliseconds kUntilKilled(2'000);
constexpr milliseconds kBetweenLooks(50);

/// What Doomsday prints when its host is gone, and when it is in the host's game.
constexpr const char* kLoss = "Connection to server was disconnected";
constexpr const char* kArrival = "Arrived in netgame";

sigset_t heeded() {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGURG}) ::sigaddset(&signals, number);
  return signals;
}

std::string problemOf(int status) {
  if (WIFSIGNALED(status)) {
    const char* description = ::sigdescr_np(WTERMSIG(status));
    return "was ended by signal " + std::to_string(WTERMSIG(status)) +
           (description == nullptr ? "" : " (" + std::string(description) + ')');
  }
  return WEXITSTATUS(status) == 0 ? ""
                                  : "ended with the error " + std::to_string(WEXITSTATUS(status));
}

/// In the new process.
[[noreturn]] void become(pid_t parent, int output, std::vector<char*>& words) {
  // It ends with this program, however that ends.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (::getppid() != parent) ::_exit(EXIT_FAILURE);
  const sigset_t signals = heeded();
  ::sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  ::dup2(output, STDOUT_FILENO);
  ::dup2(output, STDERR_FILENO);
  ::execv(words[0], words.data());
  const std::string problem = std::string(words[0]) + ": " + ::strerror(errno) + '\n';
  [[maybe_unused]] const ssize_t written = ::write(output, problem.data(), problem.size());
  ::_exit(EXIT_FAILURE);
}

}  // namespace

struct Programs::Program {
  Role role;
  std::string name;
  pid_t process;
  int output;
  std::string unfinished = {};
  std::deque<std::string> last = {};
  bool arrived = false;
  std::optional<Clock::time_point> lost = {};
};

Programs::Programs() {
  const sigset_t signals = heeded();
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  signals_ = ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

Programs::~Programs() {
  endAll();
  ::close(signals_);
}

void Programs::start(Role role, const std::string& name, Words words) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw Refusal(::strerror(errno));
  std::cout << "Starting " << name << ": " << words[0] << std::endl;
  std::vector<char*> list;
  for (std::string& word : words) list.push_back(word.data());
  list.push_back(nullptr);
  const pid_t self = ::getpid();
  const pid_t process = ::fork();
  if (process == 0) become(self, ends[1], list);
  ::close(ends[1]);
  if (process < 0) {
    ::close(ends[0]);
    throw Refusal(name + " could not be started: " + ::strerror(errno));
  }
  ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
  running_.push_back({.role = role, .name = name, .process = process, .output = ends[0]});
}

void Programs::fail(const Program& program, const std::string& sentence) {
  std::string text = sentence;
  for (const std::string& line : program.last) text += '\n' + line;
  throw Refusal(text);
}

void Programs::hear(Program& program, const std::string& line) {
  if (line.find_first_not_of(" \t\r") == std::string::npos) return;
  program.last.push_back(line);
  if (program.last.size() > kLastLines) program.last.pop_front();
  if (line.find(kArrival) != std::string::npos) program.arrived = true;
  if (!program.lost && line.find(kLoss) != std::string::npos) {
    program.lost = Clock::now() + kUntilLost;
  }
}

void Programs::listen(Program& program) {
  std::array<char, 4'096> bytes{};
  ssize_t count = 0;
  while ((count = ::read(program.output, bytes.data(), bytes.size())) > 0) {
    std::cout.write(bytes.data(), count).flush();
    program.unfinished.append(bytes.data(), static_cast<std::size_t>(count));
    for (std::size_t end = 0; (end = program.unfinished.find('\n')) != std::string::npos;) {
      hear(program, program.unfinished.substr(0, end));
      program.unfinished.erase(0, end + 1);
    }
    constexpr std::size_t kLongestLine = 10'000;
    if (program.unfinished.size() > kLongestLine) program.unfinished.clear();
  }
}

void Programs::takeLeave(Program& program, int status) {
  listen(program);
  hear(program, program.unfinished);
  const Program ended = program;
  ::close(program.output);
  running_.remove_if([&](const Program& each) { return each.process == ended.process; });
  const std::string problem = problemOf(status);
  if (ended.role == Role::server) {
    fail(ended, ended.name + ' ' + (problem.empty() ? "has ended" : problem));
  }
  if (!problem.empty()) fail(ended, ended.name + ' ' + problem);
}

bool Programs::told(milliseconds time) const {
  pollfd wanted{signals_, POLLIN, 0};
  return ::poll(&wanted, 1, static_cast<int>(time.count())) > 0;
}

bool Programs::run(milliseconds time) {
  for (const auto end = Clock::now() + time; Clock::now() < end;) {
    if (told(kBetweenLooks)) {
      endAll();
      return false;
    }
    for (Program& program : running_) {
      listen(program);
      if (program.lost && Clock::now() >= *program.lost) {
        fail(program, program.arrived
                          ? "the host has ended the game"
                          : "the host's game doesn't take this one: it has another game file, or "
                            "as many players as it takes");
      }
      int status = 0;
      if (::waitpid(program.process, &status, WNOHANG) == program.process) {
        takeLeave(program, status);
        endAll();
        return false;
      }
    }
  }
  return true;
}

void Programs::endAll() {
  for (const Program& program : running_) ::kill(program.process, SIGTERM);
  const auto end = Clock::now() + kUntilKilled;
  while (!running_.empty()) {
    for (Program& program : running_) {
      if (Clock::now() >= end) ::kill(program.process, SIGKILL);
      listen(program);
    }
    running_.remove_if([](const Program& program) {
      const bool ended = ::waitpid(program.process, nullptr, WNOHANG) == program.process;
      if (ended) ::close(program.output);
      return ended;
    });
    if (!running_.empty()) std::this_thread::sleep_for(kBetweenLooks);
  }
}

}  // namespace kelvaron::engines
