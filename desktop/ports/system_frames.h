// The frames that the system draws around windows.
#pragma once

#include <QApplication>

namespace kelvaron {

/// Has the frames drawn dark, as what they surround is, where the system leaves that to programs.
void darkenFrames(QApplication& application);

}  // namespace kelvaron
