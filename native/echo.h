// ICMP echoes as the system permits them.
#pragma once

#include <memory>

#include "platform/echo.h"
#include "platform/event_loop.h"

namespace kelvaron {

std::unique_ptr<EchoPort> makeEcho(EventLoop& loop);

}  // namespace kelvaron
