#include "native/machine.h"

#include <ifaddrs.h>
#include <linux/if.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

#include "native/socket_headers.h"

namespace kelvaron {

std::string firstMachineAddress() {
  ifaddrs* first = nullptr;
  if (::getifaddrs(&first) == 0) {
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> list(first, &::freeifaddrs);
    for (const ifaddrs* entry = list.get(); entry != nullptr; entry = entry->ifa_next) {
      if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET) continue;
      if ((entry->ifa_flags & IFF_UP) == 0 || (entry->ifa_flags & IFF_LOOPBACK) != 0) continue;
      Endpoint endpoint;
      endpoint.length = sizeof(sockaddr_in);
      std::memcpy(&endpoint.address, entry->ifa_addr, sizeof(sockaddr_in));
      return endpoint.ip();
    }
  }
  return "127.0.0.1";
}

std::string machineName() {
  constexpr std::size_t kNameBuffer = 256;
  std::array<char, kNameBuffer> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

Resolution addressesInOrder(const std::string& host) {
  constexpr std::size_t kLargestBuffer = std::size_t{1} << 20U;
  std::vector<char> buffer(4096);
  hostent entry{};
  hostent* found = nullptr;
  int problem = 0;
  while (::gethostbyname_r(host.c_str(), &entry, buffer.data(), buffer.size(), &found, &problem) ==
             ERANGE &&
         buffer.size() < kLargestBuffer) {
    buffer.resize(buffer.size() * 2);
  }
  return found == nullptr ? Resolution() : internetAddresses(*found);
}

}  // namespace kelvaron
