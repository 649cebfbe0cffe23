// Starting programs on this system.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/process.h"

namespace kelvaron {

/// A started program gets a session of its own, an input at its end, a keeper for the last of what
/// it prints (see output_capture.h), no other open descriptor, and every signal at its default.
/// Where the system can't tell it the window style, its window comes up as it likes.
class NativeProcessPort : public ProcessPort {
 public:
  /// How long a program that ends with an error is said to have failed.
  static constexpr std::chrono::milliseconds kEarly{2'000};
  /// The exit code, EX_UNAVAILABLE of sysexits.h, that is told later than that as well.
  static constexpr int kTold = 69;

  explicit NativeProcessPort(EventLoop& loop);
  /// Programs that still run go on.
  ~NativeProcessPort() override;

  void run(const std::string& command, WindowStyle style,
           std::function<void()> failed = {}) override;
  /// As `ChildProcess::leave`.
  void leave(const std::string& command) override;

 private:
  struct Running;

  void tellLater(std::function<void()> teller, std::chrono::milliseconds delay = {});
  void tell(const std::string& text) const;
  void tellOfEnd(const std::shared_ptr<Running>& program);
  void lookLater(std::uint64_t id);
  void look(std::uint64_t id);

  EventLoop& loop_;
  std::map<std::uint64_t, std::unique_ptr<Running>> running_;
  std::map<std::uint64_t, std::unique_ptr<LoopWatch>> toTell_;
  std::uint64_t nextId_ = 0;
};

}  // namespace kelvaron
