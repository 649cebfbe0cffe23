#include "native/child_process.h"

#include <signal.h>
#include <string.h>
#include <sys/wait.h>

#include <cerrno>
#include <system_error>

#include "base/code_page.h"
#include "native/posix/spawn.h"

namespace kelvaron {
namespace {

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

class PosixChild final : public ChildProcess {
 public:
  explicit PosixChild(pid_t process) : process_(process) {}

  std::optional<Ending> ended() override {
    int status = 0;
    const pid_t result = ::waitpid(process_, &status, WNOHANG);
    if (result == 0 || (result < 0 && errno == EINTR)) return std::nullopt;
    // Where another part of this program has taken the exit status, nothing is known.
    if (result < 0) return Ending{};
    if (WIFSIGNALED(status)) {
      const char* description = ::sigdescr_np(WTERMSIG(status));
      return Ending{std::nullopt,
                    "was ended by signal " + std::to_string(WTERMSIG(status)) +
                        (description == nullptr ? "" : " (" + std::string(description) + ")")};
    }
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
    return Ending{code, code == 0 ? "" : "ended with the error " + std::to_string(code)};
  }

  /// By SIGURG. What has ended keeps its number until `ended` has answered.
  void leave() override { ::kill(process_, SIGURG); }

 private:
  pid_t process_;
};

}  // namespace

ChildProcess::Started ChildProcess::start(const std::string& path,
                                          const std::vector<std::string>& arguments, int output,
                                          WindowStyle) {
  pid_t process = 0;
  const int error =
      spawn(process,
            {.path = path, .arguments = arguments, .output = output, .environment = std::nullopt});
  if (error != 0) return {nullptr, spawnProblem(error)};
  return {std::make_unique<PosixChild>(process), {}};
}

}  // namespace kelvaron
