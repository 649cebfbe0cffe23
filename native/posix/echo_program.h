// An echo by the system's program `ping`.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "native/disk_file.h"
#include "native/posix/ping_output.h"
#include "platform/echo.h"
#include "platform/event_loop.h"

namespace kelvaron {

/// Where the program lies; empty when the system has none.
std::string pingProgram();

class ProgramEcho final : public Echo {
 public:
  /// `host` is an address in dotted decimal. No shell sees it.
  ProgramEcho(EventLoop& loop, const std::string& program, const std::string& host,
              std::string_view data, std::chrono::milliseconds timeOut, EchoPort::Done done);
  ~ProgramEcho() override;

 private:
  void start(const std::string& program, const std::string& host, std::string_view data);
  void read();
  void finish(const EchoOutcome& outcome);
  void stop();

  EventLoop& loop_;
  EchoPort::Done done_;
  pid_t process_ = 0;
  FileDescriptor output_;
  PingOutput printed_;
  std::optional<std::chrono::steady_clock::time_point> sent_;
  std::unique_ptr<LoopWatch> watch_;
  std::unique_ptr<LoopWatch> timer_;
};

}  // namespace kelvaron
