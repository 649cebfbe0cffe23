// The clock that all waiting, counting and forgetting goes by.
#pragma once

#include <chrono>

namespace kelvaron::server {

using Clock = std::chrono::steady_clock;

}  // namespace kelvaron::server
