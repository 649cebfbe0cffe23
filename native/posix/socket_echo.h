// ICMP echoes by whatever way the system leaves open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "native/posix/echo_program.h"
#include "platform/echo.h"
#include "platform/event_loop.h"

namespace kelvaron {

/// How an echo can get out.
enum class EchoWay {
  /// A datagram socket, for whoever net.ipv4.ping_group_range names.
  datagram,
  /// A raw socket, for administrators.
  raw,
  /// The system's program `ping`, which has the right to.
  program,
};

class NativeEcho final : public EchoPort {
 public:
  /// The first of `ways` that the system permits is taken at the first echo and kept, as long as it
  /// stays permitted. `program` is tried for the way of that name.
  explicit NativeEcho(EventLoop& loop,
                      std::vector<EchoWay> ways = {EchoWay::datagram, EchoWay::raw,
                                                   EchoWay::program},
                      std::string program = pingProgram());

  std::unique_ptr<Echo> send(std::uint32_t address, std::string_view data,
                             std::chrono::milliseconds timeOut, Done done) override;

 private:
  std::optional<EchoWay> choose() const;

  EventLoop& loop_;
  std::vector<EchoWay> ways_;
  std::string program_;
  std::optional<EchoWay> chosen_;
  std::uint16_t sequence_ = 0;
};

}  // namespace kelvaron
