// The system's store of settings, or what stands for one where there is none.
#pragma once

#include <memory>

#include "platform/registry.h"

namespace kelvaron {

std::unique_ptr<Registry> makeRegistry();

}  // namespace kelvaron
