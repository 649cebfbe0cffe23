#include "native/native_process.h"

#include <signal.h>
#include <string.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "base/code_page.h"
#include "native/command_line.h"
#include "native/output_capture.h"
#include "native/spawn.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// How often a program is looked at that could still fail early, and one that only has to be taken
// leave of.
constexpr milliseconds kBetweenEarlyLooks(100);
constexpr milliseconds kBetweenLateLooks(1'000);
// How long the last of what a program has printed is waited for, and how often it's looked for.
constexpr milliseconds kLongestWaitForOutput(500);
constexpr milliseconds kBetweenLooksForOutput(10);
constexpr std::size_t kLongestNameShown = 300;

std::string shown(std::string_view location) {
  std::string text(location.substr(0, kLongestNameShown));
  if (location.size() > kLongestNameShown) text += "...";
  std::ranges::replace_if(text, isControl, '?');
  return text;
}

/// Why a file that is there and may be executed did not start.
std::string spawnProblem(int error) {
  switch (error) {
    case ENOEXEC:
      return "could not be read as a program";
    case ENOENT:
      return "needs a program to run it that this system lacks";
    case E2BIG:
      return "was not started: the command is too long";
    default:
      return "could not be started: " + fromUtf8(std::generic_category().message(error));
  }
}

std::string endProblem(int status) {
  if (WIFSIGNALED(status)) {
    const char* description = ::sigdescr_np(WTERMSIG(status));
    return "was ended by signal " + std::to_string(WTERMSIG(status)) +
           (description == nullptr ? "" : " (" + std::string(description) + ")");
  }
  const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
  return code == 0 ? "" : "ended with the error " + std::to_string(code);
}

}  // namespace

struct NativeProcessPort::Running {
  std::string command;
  std::string location;
  std::function<void()> failed;
  OutputCapture printed;
  bool early = true;
  Clock::time_point started = Clock::now();
  std::unique_ptr<LoopWatch> nextLook;
  // Why it is told of, and when it ended.
  std::string problem;
  Clock::time_point ended{};
};

NativeProcessPort::NativeProcessPort(EventLoop& loop) : loop_(loop) {}

NativeProcessPort::~NativeProcessPort() = default;

void NativeProcessPort::run(const std::string& command, WindowStyle, std::function<void()> failed) {
  const auto refuse = [&](std::string text) {
    if (failed) return tellLater(std::move(failed));
    tellLater([this, text = std::move(text)] { tell(text); });
  };
  const CommandLine cut = tokenize(command);
  if (cut.location.empty()) return refuse("No program was started: none is chosen yet.");
  const std::string location = shown(cut.location);
  if (const std::string problem = startProblem(cut); !problem.empty()) {
    return refuse(location + ' ' + problem + '.');
  }

  auto running = std::make_unique<Running>();
  running->command = command;
  running->location = location;
  const ProgramStart start{.path = cut.program->path,
                           .arguments = cut.arguments,
                           .output = running->printed.descriptor(),
                           .environment = std::nullopt};
  pid_t process = 0;
  if (const int error = spawn(process, start)) {
    return refuse(location + ' ' + spawnProblem(error) + '.');
  }
  running->printed.started();
  running->failed = std::move(failed);
  running_[process] = std::move(running);
  lookLater(process);
}

void NativeProcessPort::leave(const std::string& command) {
  // What has ended keeps its number until `look` has taken leave of it.
  for (const auto& [process, program] : running_) {
    if (program->command == command) ::kill(process, SIGURG);
  }
}

void NativeProcessPort::tellLater(std::function<void()> teller, milliseconds delay) {
  const std::uint64_t id = nextToTell_++;
  toTell_[id] = loop_.after(delay, [this, id, teller = std::move(teller)] {
    const auto own = toTell_.extract(id);
    teller();
  });
}

void NativeProcessPort::tell(const std::string& text) const {
  const auto handler = onTrouble;  // the handler may destroy this port
  if (handler) handler(text);
}

void NativeProcessPort::lookLater(pid_t process) {
  Running& program = *running_.at(process);
  program.nextLook = loop_.after(program.early ? kBetweenEarlyLooks : kBetweenLateLooks,
                                 [this, process] { look(process); });
}

void NativeProcessPort::look(pid_t process) {
  int status = 0;
  const pid_t result = ::waitpid(process, &status, WNOHANG);
  if (result == 0 || (result < 0 && errno == EINTR)) {
    Running& program = *running_.at(process);
    program.early = Clock::now() - program.started < kEarly;
    return lookLater(process);
  }
  auto ended = running_.extract(process);
  Running& program = *ended.mapped();
  // Where another part of this program has taken the exit status, nothing is known.
  const bool told = WIFEXITED(status) && WEXITSTATUS(status) == kTold;
  if (result < 0 || (!program.early && !told)) return;
  program.problem = endProblem(status);
  if (program.problem.empty()) return;
  if (program.failed) return program.failed();
  program.ended = Clock::now();
  tellOfEnd(std::move(ended.mapped()));
}

/// Tells of a program that has ended, when its last lines are there.
void NativeProcessPort::tellOfEnd(const std::shared_ptr<Running>& program) {
  if (!program->printed.complete() && Clock::now() - program->ended < kLongestWaitForOutput) {
    tellLater([this, program] { tellOfEnd(program); }, kBetweenLooksForOutput);
    return;
  }
  const std::string printed = program->printed.last();
  tell(program->location + ' ' + program->problem + '.' +
       (printed.empty() ? "" : std::string(kLineEnd) + "The last that it said:" + printed));
}

}  // namespace kelvaron
