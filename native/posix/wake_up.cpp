#include "native/wake_up.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>

namespace kelvaron {

WakeUp::WakeUp() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!descriptor_) throw std::system_error(errno, std::generic_category(), "eventfd");
}

// Cannot fail: the descriptor is open, and the counter far from its end.
void WakeUp::signal() const { static_cast<void>(::eventfd_write(descriptor_.get(), 1)); }

}  // namespace kelvaron
