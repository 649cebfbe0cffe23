#include "desktop/ports/system_frames.h"

namespace kelvaron {

// Frames are the window manager's.
void darkenFrames(QApplication& /*application*/) {}

}  // namespace kelvaron
