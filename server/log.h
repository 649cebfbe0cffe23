// The log as the rest of the server sees it.
#pragma once

#include <functional>
#include <string_view>

namespace kelvaron::server {

/// Takes one line of the log, in UTF-8 and without a line end.
using Log = std::function<void(std::string_view)>;

}  // namespace kelvaron::server
