#include "native/wake_up.h"

#include <system_error>

#include "native/windows/winsock.h"

namespace kelvaron {

// A datagram socket that is joined to itself: what the loop's notifiers watch has to be a socket.
WakeUp::WakeUp() {
  startSockets();
  descriptor_ = SocketDescriptor(
      static_cast<int>(::WSASocketW(AF_INET, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, 0)));
  const SOCKET handle = handleOf(descriptor_.get());
  Endpoint self = *numericEndpoint("127.0.0.1", 0);
  auto* const address = reinterpret_cast<sockaddr*>(&self.address);
  setNonBlocking(handle);
  if (!descriptor_ || ::bind(handle, address, self.length) != 0 ||
      ::getsockname(handle, address, &self.length) != 0 ||
      ::connect(handle, address, self.length) != 0) {
    throw std::system_error(winsockErrno(), std::generic_category(), "wake-up");
  }
}

// Room for one byte is always there.
void WakeUp::signal() const { static_cast<void>(::send(handleOf(descriptor_.get()), "", 1, 0)); }

}  // namespace kelvaron
