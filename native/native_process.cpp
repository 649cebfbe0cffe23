#include "native/native_process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "native/command_text.h"
#include "native/printed_lines.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

// How often a program is looked at that could still fail early, and one that only has to be taken
// leave of.
constexpr milliseconds kBetweenEarlyLooks(100);
constexpr milliseconds kBetweenLateLooks(1'000);
constexpr std::size_t kLongestNameShown = 300;

/// What posix_spawn is told besides the program and its arguments.
class SpawnSettings {
 public:
  explicit SpawnSettings(int output) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawnattr_init(&attributes_);
    if (output < 0) check(EMFILE);
    check(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    check(::posix_spawn_file_actions_adddup2(&actions_, output, STDOUT_FILENO));
    check(::posix_spawn_file_actions_adddup2(&actions_, output, STDERR_FILENO));
    check(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
    sigset_t signals;
    ::sigemptyset(&signals);
    check(::posix_spawnattr_setsigmask(&attributes_, &signals));
    ::sigfillset(&signals);
    check(::posix_spawnattr_setsigdefault(&attributes_, &signals));
    check(::posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID));
  }
  SpawnSettings(const SpawnSettings&) = delete;
  SpawnSettings& operator=(const SpawnSettings&) = delete;
  ~SpawnSettings() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }

  /// Zero, or an errno value.
  int spawn(pid_t& process, const std::string& program, std::vector<std::string> arguments) const {
    if (error_ != 0) return error_;
    std::vector<char*> list;
    list.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) list.push_back(argument.data());
    list.push_back(nullptr);
    return ::posix_spawn(&process, program.c_str(), &actions_, &attributes_, list.data(), environ);
  }

 private:
  void check(int result) {
    if (error_ == 0) error_ = result;
  }

  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
  int error_ = 0;
};

std::string shown(std::string_view location) {
  std::string text(location.substr(0, kLongestNameShown));
  if (location.size() > kLongestNameShown) text += "...";
  std::ranges::replace_if(
      text, [](unsigned char byte) { return byte < ' ' || byte == 127; }, '?');
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
  std::string location;
  std::unique_ptr<PrintedLines> printed;  // until its early time is over
  Clock::time_point started = Clock::now();
  std::unique_ptr<LoopWatch> nextLook;
};

NativeProcessPort::NativeProcessPort(EventLoop& loop) : loop_(loop) {}

NativeProcessPort::~NativeProcessPort() = default;

void NativeProcessPort::run(const std::string& command, WindowStyle) {
  const CutCommand cut = cutCommand(command);
  if (cut.location.empty()) return tellLater("No program was started: none is chosen yet.");
  const std::string location = shown(cut.location);
  if (const std::string problem = startProblem(cut); !problem.empty()) {
    return tellLater(location + ' ' + problem + '.');
  }

  auto running = std::make_unique<Running>();
  running->location = location;
  running->printed = std::make_unique<PrintedLines>();
  std::vector<std::string> arguments = {cut.program->path};
  arguments.insert(arguments.end(), cut.arguments.begin(), cut.arguments.end());
  pid_t process = 0;
  const SpawnSettings settings(running->printed->descriptor());
  if (const int error = settings.spawn(process, cut.program->path, std::move(arguments))) {
    return tellLater(location + ' ' + spawnProblem(error) + '.');
  }
  running_[process] = std::move(running);
  lookLater(process);
}

void NativeProcessPort::tellLater(std::string text) {
  const std::uint64_t id = nextToTell_++;
  toTell_[id] = loop_.after(milliseconds(0), [this, id, text = std::move(text)] {
    const auto own = toTell_.extract(id);
    tell(text);
  });
}

void NativeProcessPort::tell(const std::string& text) const {
  const auto handler = onTrouble;  // the handler may destroy this port
  if (handler) handler(text);
}

void NativeProcessPort::lookLater(pid_t process) {
  Running& program = *running_.at(process);
  program.nextLook = loop_.after(program.printed ? kBetweenEarlyLooks : kBetweenLateLooks,
                                 [this, process] { look(process); });
}

void NativeProcessPort::look(pid_t process) {
  int status = 0;
  const pid_t result = ::waitpid(process, &status, WNOHANG);
  if (result == 0 || (result < 0 && errno == EINTR)) {
    Running& program = *running_.at(process);
    if (Clock::now() - program.started >= kEarly) program.printed.reset();
    return lookLater(process);
  }
  const auto ended = running_.extract(process);
  const Running& program = *ended.mapped();
  // Where another part of this program has taken the exit status, nothing is known.
  if (result < 0 || !program.printed) return;
  if (const std::string problem = endProblem(status); !problem.empty()) {
    const std::string printed = program.printed->last();
    tell(program.location + ' ' + problem + '.' +
         (printed.empty() ? "" : std::string(kLineEnd) + "The last that it said:" + printed));
  }
}

}  // namespace kelvaron
