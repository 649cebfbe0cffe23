// The voice of windows: a screen reader hears each as the window or dialog that it is.
#pragma once

namespace kelvaron {

/// Makes all windows of forms speak so; to be called at least once.
void installFrameAccessibility();

}  // namespace kelvaron
