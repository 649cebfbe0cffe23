#include "native/machine.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <vector>

#include "native/socket_headers.h"
#include "native/windows/winsock.h"

namespace kelvaron {

std::string firstMachineAddress() {
  constexpr ULONG kFirstRoom = 15'000;  // as the documentation of the call advises
  constexpr int kTries = 3;             // adapters may come while it is asked
  ULONG room = kFirstRoom;
  std::vector<unsigned char> answer;
  ULONG result = ERROR_BUFFER_OVERFLOW;
  for (int tries = 0; tries < kTries && result == ERROR_BUFFER_OVERFLOW; ++tries) {
    answer.resize(room);
    result = ::GetAdaptersAddresses(AF_INET, 0, nullptr,
                                    reinterpret_cast<IP_ADAPTER_ADDRESSES*>(answer.data()), &room);
  }
  if (result != ERROR_SUCCESS) return "127.0.0.1";
  for (const auto* adapter = reinterpret_cast<const IP_ADAPTER_ADDRESSES*>(answer.data());
       adapter != nullptr; adapter = adapter->Next) {
    const auto* const first = adapter->FirstUnicastAddress;
    const bool usable = adapter->OperStatus == IfOperStatusUp &&
                        adapter->IfType != IF_TYPE_SOFTWARE_LOOPBACK && first != nullptr;
    if (!usable || first->Address.lpSockaddr->sa_family != AF_INET) continue;
    Endpoint endpoint;
    endpoint.length = sizeof(sockaddr_in);
    std::memcpy(&endpoint.address, first->Address.lpSockaddr, sizeof(sockaddr_in));
    return endpoint.ip();
  }
  return "127.0.0.1";
}

std::string machineName() {
  startSockets();
  constexpr std::size_t kNameBuffer = 256;
  std::array<char, kNameBuffer> name{};
  if (::gethostname(name.data(), name.size() - 1) == 0) return name.data();
  errno = winsockErrno();
  return "";
}

Resolution addressesInOrder(const std::string& host) {
  startSockets();
  const hostent* found = ::gethostbyname(host.c_str());  // its answer belongs to this thread
  return found == nullptr ? Resolution() : internetAddresses(*found);
}

}  // namespace kelvaron
