#include "native/output_capture.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>

#include "native/posix/output_keeper.h"

namespace kelvaron {
namespace {

// The same above the three descriptors that programs know; none where there is none.
FileDescriptor aboveStandard(const FileDescriptor& made) {
  return FileDescriptor(::fcntl(made.get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

struct Pipe {
  FileDescriptor out;
  FileDescriptor in;
};

Pipe makePipe() {
  std::array<int, 2> ends{-1, -1};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  const FileDescriptor out(ends[0]);
  const FileDescriptor in(ends[1]);
  return {aboveStandard(out), aboveStandard(in)};
}

}  // namespace

OutputCapture::OutputCapture() : file_(createNameless()) {
  Pipe printed = makePipe();
  Pipe done = makePipe();
  if (file_ && printed.in && done.in &&
      startOutputKeeper(printed.out.get(), file_.get(), done.in.get())) {
    output_ = std::move(printed.in);
    done_ = std::move(done.out);
  } else {
    output_ = aboveStandard(FileDescriptor(::open("/dev/null", O_RDWR | O_CLOEXEC)));
  }
}

bool OutputCapture::complete() const {
  pollfd done{.fd = done_.get(), .events = POLLIN, .revents = 0};
  return !done_ || ::poll(&done, 1, 0) != 0;
}

}  // namespace kelvaron
