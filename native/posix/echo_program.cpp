#include "native/posix/echo_program.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "base/code_page.h"
#include "native/posix/spawn.h"

namespace kelvaron {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

std::string hexadecimal(std::string_view data) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char character : data) {
    const auto byte = static_cast<unsigned char>(character);
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 0x0FU];
  }
  return text;
}

/// A terminal, so that the program gives out each line as soon as it has it: the time between two
/// of them is the round trip's, without that of the program's start.
struct Terminal {
  FileDescriptor ours;
  std::array<char, 64> theirs{};
};

std::optional<Terminal> openTerminal() {
  Terminal terminal;
  terminal.ours = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
  const int ours = terminal.ours.get();
  if (ours < 0 || ::grantpt(ours) != 0 || ::unlockpt(ours) != 0 ||
      ::ptsname_r(ours, terminal.theirs.data(), terminal.theirs.size()) != 0 ||
      ::fcntl(ours, F_SETFL, O_NONBLOCK) != 0) {
    return std::nullopt;
  }
  return terminal;
}

}  // namespace

std::string pingProgram() {
  for (const char* path : {"/usr/bin/ping", "/bin/ping", "/usr/sbin/ping", "/sbin/ping"}) {
    if (::access(path, X_OK) == 0) return path;
  }
  return {};
}

ProgramEcho::ProgramEcho(EventLoop& loop, const std::string& program, const std::string& host,
                         std::string_view data, milliseconds timeOut, EchoPort::Done done)
    : loop_(loop), done_(std::move(done)) {
  timer_ = loop_.after(timeOut, [this] { finish({}); });
  start(program, host, data);
}

ProgramEcho::~ProgramEcho() { stop(); }

void ProgramEcho::start(const std::string& program, const std::string& host,
                        std::string_view data) {
  std::optional<Terminal> terminal = openTerminal();
  int error = terminal ? 0 : errno;
  if (terminal) {
    error =
        spawn(process_, {.path = program,
                         .arguments = {"-n", "-q", "-c1", "-W1", "-s" + std::to_string(data.size()),
                                       "-p", hexadecimal(data), host},
                         .output = std::string(terminal->theirs.data()),
                         .environment = std::vector<std::string>{"LC_ALL=C"}});
  }
  if (error != 0) {
    process_ = 0;
    EchoOutcome refused{
        EchoOutcome::Kind::refused, 0,
        program + " cannot be started: " + fromUtf8(std::generic_category().message(error))};
    timer_ = loop_.after(milliseconds(0), [this, refused] { finish(refused); });
    return;
  }
  output_ = std::move(terminal->ours);
  watch_ = loop_.watch(output_.get(), EventLoop::Readiness::readable, [this] { read(); });
}

void ProgramEcho::read() {
  std::array<char, 512> bytes{};
  const ssize_t count = ::read(output_.get(), bytes.data(), bytes.size());
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (count <= 0 || printed_.tooLong()) {
    // The program has ended: without a heading it could not even begin.
    if (sent_) return finish({});
    return finish({EchoOutcome::Kind::refused, 0, printed_.lastLine()});
  }
  printed_.append({bytes.data(), static_cast<std::size_t>(count)});
  const auto now = steady_clock::now();
  if (!sent_ && printed_.sent()) sent_ = now;
  if (!sent_ || !printed_.replied()) return;
  const auto time = std::chrono::duration_cast<milliseconds>(now - *sent_);
  finish({EchoOutcome::Kind::replied, static_cast<std::uint32_t>(time.count()), {}});
}

void ProgramEcho::finish(const EchoOutcome& outcome) {
  stop();
  const auto done = std::move(done_);  // it may destroy this object
  done(outcome);
}

void ProgramEcho::stop() {
  watch_.reset();
  timer_.reset();
  output_.reset();
  if (process_ == 0) return;
  const pid_t process = std::exchange(process_, 0);
  // Nothing that it still has to do counts.
  static_cast<void>(::kill(process, SIGKILL));
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace kelvaron
