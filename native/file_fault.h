// The fault of a file that the system refuses.
#pragma once

#include <string>

namespace kelvaron {

/// Throws fault 61 when the disk is full, else 75, with the system's words. `what` is "read" or
/// "written", `errnoValue` what the system said. `name` is code page 1252.
[[noreturn]] void throwFileFault(const std::string& name, const char* what, int errnoValue);

}  // namespace kelvaron
