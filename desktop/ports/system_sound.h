// What a system has to make sound with, and where its libVLC lies.
#pragma once

#include <QLibrary>
#include <string>
#include <vector>

namespace kelvaron {

/// Whether there is a device or a server to play sound on.
bool hasSoundDevice();

/// Tells `library` where this system has libVLC 3, and loads what that needs beside it.
void prepareVlc(QLibrary& library);

/// The options by which libVLC finds its sound device here, or `silent` one that keeps time and
/// volume as a real one does.
std::vector<std::string> vlcDevices(bool silent);

}  // namespace kelvaron
