#include "native/local_host.h"

#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "native/name_lookup.h"

namespace kelvaron {
namespace {

constexpr std::size_t kNameBuffer = 256;

/// The IPv4 addresses of a host in the order of the name service, which getaddrinfo(3) would sort.
Resolution hostAddresses(const std::string& host, std::uint16_t) {
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
  Resolution resolution;
  if (found == nullptr || found->h_addrtype != AF_INET) return resolution;
  for (char** address = found->h_addr_list; *address != nullptr; ++address) {
    sockaddr_in internet{};
    internet.sin_family = AF_INET;
    std::memcpy(&internet.sin_addr, *address, sizeof(internet.sin_addr));
    Endpoint endpoint;
    endpoint.length = sizeof(internet);
    std::memcpy(&endpoint.address, &internet, sizeof(internet));
    resolution.endpoints.push_back(endpoint);
  }
  return resolution;
}

class PendingLookUp final : public LocalHostLookUp {
 public:
  PendingLookUp(EventLoop& loop, LocalHostPort::Done done) : done_(std::move(done)) {
    std::array<char, kNameBuffer> name{};
    if (::gethostname(name.data(), name.size() - 1) != 0) {
      tellLater(loop, {{}, systemSocketError(errno).number});
      return;
    }
    try {
      lookUp_ = std::make_unique<NameLookUp>(
          loop, hostAddresses, name.data(), 0, [this](const Resolution& found) {
            tell({found.endpoints.empty() ? "" : found.endpoints.back().ip(), 0});
          });
    } catch (const std::system_error&) {
      // Without a thread or a descriptor to look it up with, the look-up has failed.
      tellLater(loop, {});
    }
  }

 private:
  void tellLater(EventLoop& loop, const LocalHostAnswer& answer) {
    later_ = loop.after(std::chrono::milliseconds(0), [this, answer] { tell(answer); });
  }
  void tell(const LocalHostAnswer& answer) {
    const auto done = std::move(done_);  // it may destroy this object
    done(answer);
  }

  LocalHostPort::Done done_;
  std::unique_ptr<NameLookUp> lookUp_;
  std::unique_ptr<LoopWatch> later_;
};

}  // namespace

std::unique_ptr<LocalHostLookUp> NativeLocalHost::localHostAddress(Done done) {
  return std::make_unique<PendingLookUp>(loop_, std::move(done));
}

}  // namespace kelvaron
