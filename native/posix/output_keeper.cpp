#include "native/posix/output_keeper.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace kelvaron {
namespace {

// Behind a fork of many threads nothing is called that could wait for one of them.

constexpr int kFrom = STDIN_FILENO;
constexpr int kFile = STDOUT_FILENO;
constexpr int kDone = STDERR_FILENO;
constexpr off_t kHalf = kMostKept / 2;

using Chunk = std::array<char, std::size_t{64} << 10U>;

void moveLastHalfToFront(off_t end) {
  Chunk chunk;
  for (off_t at = 0; at < kHalf;) {
    const ssize_t count = ::pread(kFile, chunk.data(), chunk.size(), end - kHalf + at);
    if (count <= 0 || ::pwrite(kFile, chunk.data(), static_cast<std::size_t>(count), at) != count) {
      break;
    }
    at += count;
  }
  [[maybe_unused]] const int cut = ::ftruncate(kFile, kHalf);  // else what is kept is longer
}

// What the disk has no room for is lost, and the program goes on.
void keep() {
  Chunk chunk;
  for (off_t end = 0;;) {
    const ssize_t count = ::read(kFrom, chunk.data(), chunk.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return;
    if (end + count > static_cast<off_t>(kMostKept)) {
      moveLastHalfToFront(end);
      end = kHalf;
    }
    const ssize_t kept = ::pwrite(kFile, chunk.data(), static_cast<std::size_t>(count), end);
    if (kept > 0) end += kept;
  }
}

}  // namespace

bool startOutputKeeper(int from, int file, int done) {
  const pid_t between = ::fork();
  if (between == 0) {
    // Its own child belongs to nobody here.
    const pid_t keeper = ::fork();
    if (keeper != 0) ::_exit(keeper > 0 ? 0 : 1);
    ::setsid();
    const bool ready = ::chdir("/") == 0 && ::dup2(from, kFrom) == kFrom &&
                       ::dup2(file, kFile) == kFile && ::dup2(done, kDone) == kDone &&
                       ::close_range(STDERR_FILENO + 1, ~0U, 0) == 0;
    if (ready) keep();
    ::_exit(0);
  }
  if (between < 0) return false;
  int status = 0;
  while (::waitpid(between, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace kelvaron
