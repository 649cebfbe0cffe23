// What a service's manager wants to be told, sd_notify(3).
#pragma once

#include <string_view>

namespace kelvaron::server {

/// Tells a state such as "READY=1" to the manager that `NOTIFY_SOCKET` names. Where it names none,
/// or one that can't be reached, nothing happens: a manager who waits in vain says so itself.
void tellManager(std::string_view state);

}  // namespace kelvaron::server
