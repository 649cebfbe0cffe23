#include "native/native_process.h"

#include <algorithm>
#include <utility>

#include "base/code_page.h"
#include "native/child_process.h"
#include "native/command_line.h"
#include "native/output_capture.h"
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

}  // namespace

struct NativeProcessPort::Running {
  std::string command;
  std::string location;
  std::function<void()> failed;
  std::unique_ptr<ChildProcess> process;
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

void NativeProcessPort::run(const std::string& command, WindowStyle style,
                            std::function<void()> failed) {
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
  ChildProcess::Started started =
      ChildProcess::start(cut.program->path, cut.arguments, running->printed.descriptor(), style);
  if (!started.child) return refuse(location + ' ' + started.problem + '.');
  running->process = std::move(started.child);
  running->printed.started();
  running->failed = std::move(failed);
  const std::uint64_t id = nextId_++;
  running_[id] = std::move(running);
  lookLater(id);
}

void NativeProcessPort::leave(const std::string& command) {
  for (const auto& [id, program] : running_) {
    if (program->command == command) program->process->leave();
  }
}

void NativeProcessPort::tellLater(std::function<void()> teller, milliseconds delay) {
  const std::uint64_t id = nextId_++;
  toTell_[id] = loop_.after(delay, [this, id, teller = std::move(teller)] {
    const auto own = toTell_.extract(id);
    teller();
  });
}

void NativeProcessPort::tell(const std::string& text) const {
  const auto handler = onTrouble;  // the handler may destroy this port
  if (handler) handler(text);
}

void NativeProcessPort::lookLater(std::uint64_t id) {
  Running& program = *running_.at(id);
  program.nextLook =
      loop_.after(program.early ? kBetweenEarlyLooks : kBetweenLateLooks, [this, id] { look(id); });
}

void NativeProcessPort::look(std::uint64_t id) {
  const std::optional<ChildProcess::Ending> ending = running_.at(id)->process->ended();
  if (!ending) {
    Running& program = *running_.at(id);
    program.early = Clock::now() - program.started < kEarly;
    return lookLater(id);
  }
  auto ended = running_.extract(id);
  Running& program = *ended.mapped();
  if ((!program.early && ending->code != kTold) || ending->problem.empty()) return;
  if (program.failed) return program.failed();
  program.problem = ending->problem;
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
