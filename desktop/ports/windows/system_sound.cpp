#include "desktop/ports/system_sound.h"

#include <QSettings>

#include "native/windows/system_headers.h"
// Needs the header before it.
#include <mmsystem.h>

namespace kelvaron {

bool hasSoundDevice() { return ::waveOutGetNumDevs() > 0; }

void prepareVlc(QLibrary& library) {
  const QSettings installed(QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\VideoLAN\\VLC"),
                            QSettings::Registry64Format);
  const QString folder = installed.value(QStringLiteral("InstallDir")).toString();
  // No library is taken from a folder that the search for libraries might come to.
  if (folder.isEmpty()) return;
  // The system looks for what a library needs beside the program, not beside the library; what is
  // loaded already is found.
  QLibrary(folder + QStringLiteral("/libvlccore.dll")).load();
  library.setFileName(folder + QStringLiteral("/libvlc.dll"));
}

std::vector<std::string> vlcDevices(bool silent) {
  return silent ? std::vector<std::string>{"--aout=adummy"} : std::vector<std::string>{};
}

}  // namespace kelvaron
