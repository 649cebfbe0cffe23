#include "native/local_host.h"

#include <cerrno>
#include <system_error>
#include <utility>

#include "native/machine.h"
#include "native/name_lookup.h"

namespace kelvaron {
namespace {

class PendingLookUp final : public LocalHostLookUp {
 public:
  PendingLookUp(EventLoop& loop, LocalHostPort::Done done) : done_(std::move(done)) {
    const std::string name = machineName();
    if (name.empty()) {
      tellLater(loop, {{}, systemSocketError(errno).number});
      return;
    }
    try {
      lookUp_ = std::make_unique<NameLookUp>(
          loop, [](const std::string& host, std::uint16_t) { return addressesInOrder(host); }, name,
          0,
          [this](const Resolution& found) {
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
