// A process that keeps the last of what a program prints, also when this one has ended.
#pragma once

#include <cstddef>

namespace kelvaron {

/// Of what a program prints so much stays on the disk, and at least the last half of that.
inline constexpr std::size_t kMostKept = std::size_t{16} << 20U;

/// Starts the process: it writes what comes out of the pipe `from` to `file`, until all who can
/// write to the pipe have gone, and then closes `done`, which it has alone with the caller. All are
/// above the standard three. Whether it runs; nobody has to take leave of it.
bool startOutputKeeper(int from, int file, int done);

}  // namespace kelvaron
