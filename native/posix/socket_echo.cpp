#include "native/posix/socket_echo.h"

#include <linux/icmp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "native/disk_file.h"
#include "native/echo.h"
#include "native/endpoint.h"
#include "native/posix/echo_packet.h"
#include "native/socket_error.h"

namespace kelvaron {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char* kNoWay =
    "This system permits no pings. An administrator can permit them by setting "
    "net.ipv4.ping_group_range to \"0 2147483647\", or by installing the program ping.";

FileDescriptor openSocket(EchoWay way) {
  const int type = way == EchoWay::datagram ? SOCK_DGRAM : SOCK_RAW;
  return FileDescriptor(::socket(AF_INET, type | SOCK_NONBLOCK | SOCK_CLOEXEC, IPPROTO_ICMP));
}

sockaddr_in internetAddress(std::uint32_t address) {
  sockaddr_in internet{};
  internet.sin_family = AF_INET;
  // The first number of the address is in the low byte, and comes first in network order.
  std::array<unsigned char, 4> bytes{};
  for (unsigned index = 0; index < bytes.size(); ++index) {
    bytes[index] = static_cast<unsigned char>(address >> (8U * index));
  }
  std::memcpy(&internet.sin_addr, bytes.data(), bytes.size());
  return internet;
}

std::string dotted(const sockaddr_in& internet) {
  Endpoint endpoint;
  endpoint.length = sizeof(internet);
  std::memcpy(&endpoint.address, &internet, sizeof(internet));
  return endpoint.ip();
}

/// Tells an outcome that is known at once.
class FinishedEcho final : public Echo {
 public:
  FinishedEcho(EventLoop& loop, EchoOutcome outcome, EchoPort::Done done) {
    later_ = loop.after(milliseconds(0),
                        [outcome = std::move(outcome), done = std::move(done)] { done(outcome); });
  }

 private:
  std::unique_ptr<LoopWatch> later_;
};

class SocketEcho final : public Echo {
 public:
  SocketEcho(EventLoop& loop, EchoWay way, FileDescriptor opened, const sockaddr_in& to,
             EchoMark mark, std::string_view data, milliseconds timeOut, EchoPort::Done done)
      : way_(way),
        to_(to),
        mark_(mark),
        data_(data),
        done_(std::move(done)),
        descriptor_(std::move(opened)) {
    if (way_ == EchoWay::raw) {
      // A raw socket hears every ICMP message; where the filter fails, `isEchoReply` tells them.
      icmp_filter filter{};
      filter.data = ~(1U << static_cast<unsigned>(ICMP_ECHOREPLY));
      static_cast<void>(
          ::setsockopt(descriptor_.get(), SOL_RAW, ICMP_FILTER, &filter, sizeof(filter)));
    }
    const std::string request = echoRequest(mark_, data_);
    sent_ = steady_clock::now();
    const ssize_t count = ::sendto(descriptor_.get(), request.data(), request.size(), MSG_NOSIGNAL,
                                   reinterpret_cast<const sockaddr*>(&to_), sizeof(to_));
    if (count < 0) {
      const EchoOutcome refused{EchoOutcome::Kind::refused, 0, systemSocketError(errno).text};
      timer_ = loop.after(milliseconds(0), [this, refused] { finish(refused); });
      return;
    }
    timer_ = loop.after(timeOut, [this] { finish({}); });
    watch_ = loop.watch(descriptor_.get(), EventLoop::Readiness::readable, [this] { read(); });
  }

 private:
  static constexpr int kPacketsPerTurn = 64;

  /// Whether the reply is there.
  bool receive() {
    for (int packets = 0; packets < kPacketsPerTurn; ++packets) {
      std::array<char, 2048> packet{};
      sockaddr_in from{};
      socklen_t size = sizeof(from);
      const ssize_t count = ::recvfrom(descriptor_.get(), packet.data(), packet.size(), 0,
                                       reinterpret_cast<sockaddr*>(&from), &size);
      if (count < 0) return false;
      std::string_view message(packet.data(), static_cast<std::size_t>(count));
      if (way_ == EchoWay::raw) message = withoutIpHead(message);
      if (from.sin_addr.s_addr == to_.sin_addr.s_addr &&
          isEchoReply(message, mark_, data_, way_ == EchoWay::datagram)) {
        return true;
      }
    }
    return false;
  }

  void read() {
    if (!receive()) return;
    const auto time = std::chrono::duration_cast<milliseconds>(steady_clock::now() - sent_);
    finish({EchoOutcome::Kind::replied, static_cast<std::uint32_t>(time.count()), {}});
  }

  void finish(const EchoOutcome& outcome) {
    watch_.reset();
    timer_.reset();
    const auto done = std::move(done_);  // it may destroy this object
    done(outcome);
  }

  EchoWay way_;
  sockaddr_in to_;
  EchoMark mark_;
  std::string data_;
  EchoPort::Done done_;
  steady_clock::time_point sent_;
  FileDescriptor descriptor_;
  std::unique_ptr<LoopWatch> watch_;
  std::unique_ptr<LoopWatch> timer_;
};

}  // namespace

NativeEcho::NativeEcho(EventLoop& loop, std::vector<EchoWay> ways, std::string program)
    : loop_(loop), ways_(std::move(ways)), program_(std::move(program)) {}

std::unique_ptr<EchoPort> makeEcho(EventLoop& loop) { return std::make_unique<NativeEcho>(loop); }

std::optional<EchoWay> NativeEcho::choose() const {
  for (const EchoWay way : ways_) {
    const bool open = way == EchoWay::program ? !program_.empty() : bool(openSocket(way));
    if (open) return way;
  }
  return std::nullopt;
}

std::unique_ptr<Echo> NativeEcho::send(std::uint32_t address, std::string_view data,
                                       milliseconds timeOut, Done done) {
  if (address == 0) return std::make_unique<FinishedEcho>(loop_, EchoOutcome{}, std::move(done));
  if (!chosen_) chosen_ = choose();
  const sockaddr_in to = internetAddress(address);
  if (chosen_ == EchoWay::program) {
    return std::make_unique<ProgramEcho>(loop_, program_, dotted(to), data, timeOut,
                                         std::move(done));
  }
  FileDescriptor opened = chosen_ ? openSocket(*chosen_) : FileDescriptor();
  if (!opened) {
    // Looked for anew next time: an administrator may have changed it.
    chosen_.reset();
    return std::make_unique<FinishedEcho>(loop_, EchoOutcome{EchoOutcome::Kind::refused, 0, kNoWay},
                                          std::move(done));
  }
  const EchoMark mark{static_cast<std::uint16_t>(::getpid()), ++sequence_};
  return std::make_unique<SocketEcho>(loop_, *chosen_, std::move(opened), to, mark, data, timeOut,
                                      std::move(done));
}

}  // namespace kelvaron
