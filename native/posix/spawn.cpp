#include "native/posix/spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>

#include "base/non_copyable.h"

namespace kelvaron {
namespace {

/// What posix_spawn is told besides the program, its arguments and its environment.
class SpawnSettings : NonCopyable {
 public:
  explicit SpawnSettings(const ProgramStart& start) {
    ::posix_spawn_file_actions_init(&actions_);
    ::posix_spawnattr_init(&attributes_);
    check(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    if (const int* descriptor = std::get_if<int>(&start.output)) {
      if (*descriptor < 0) check(EMFILE);
      check(::posix_spawn_file_actions_adddup2(&actions_, *descriptor, STDOUT_FILENO));
    } else {
      check(::posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO,
                                               std::get<std::string>(start.output).c_str(),
                                               O_WRONLY | O_NOCTTY, 0));
    }
    check(::posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO));
    check(::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
    sigset_t signals;
    ::sigemptyset(&signals);
    check(::posix_spawnattr_setsigmask(&attributes_, &signals));
    ::sigfillset(&signals);
    check(::posix_spawnattr_setsigdefault(&attributes_, &signals));
    check(::posix_spawnattr_setflags(
        &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID));
  }
  ~SpawnSettings() {
    ::posix_spawnattr_destroy(&attributes_);
    ::posix_spawn_file_actions_destroy(&actions_);
  }

  /// The first thing that went wrong, an errno value; zero where nothing did.
  int error() const { return error_; }
  const posix_spawn_file_actions_t* actions() const { return &actions_; }
  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  void check(int result) {
    if (error_ == 0) error_ = result;
  }

  posix_spawn_file_actions_t actions_{};
  posix_spawnattr_t attributes_{};
  int error_ = 0;
};

// The texts as a list that ends in null; they outlive it.
std::vector<char*> nullTerminated(std::vector<std::string>& texts) {
  std::vector<char*> list;
  list.reserve(texts.size() + 1);
  for (std::string& text : texts) list.push_back(text.data());
  list.push_back(nullptr);
  return list;
}

}  // namespace

int spawn(pid_t& process, const ProgramStart& start) {
  const SpawnSettings settings(start);
  if (settings.error() != 0) return settings.error();
  std::vector<std::string> arguments = {start.path};
  arguments.insert(arguments.end(), start.arguments.begin(), start.arguments.end());
  std::vector<std::string> environment = start.environment.value_or(std::vector<std::string>());
  return ::posix_spawn(&process, start.path.c_str(), settings.actions(), settings.attributes(),
                       nullTerminated(arguments).data(),
                       start.environment ? nullTerminated(environment).data() : environ);
}

}  // namespace kelvaron
