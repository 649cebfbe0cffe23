// The file dialog of a form.
#pragma once

#include <optional>
#include <string>

#include "platform/ports.h"

namespace kelvaron {

/// What stands behind the last "/" or "\\" of a path.
inline std::string nameWithoutFolder(const std::string& path) {
  return path.substr(path.find_last_of("/\\") + 1);
}

class CommonDialog {
 public:
  /// Words shown, or a pattern such as "*.wad". Empty shows all files.
  std::string Filter;
  std::string DialogTitle;
  /// Where the dialog starts; empty leaves it to the desktop.
  std::string InitDir;
  /// Without a dot; goes behind a name typed without an extension.
  std::string DefaultExt;
  /// The file chosen last, with its folder and without. A dismissed dialog leaves both.
  std::string FileName;
  std::string FileTitle;

  /// Shows the dialog and waits. Returns whether the user chose a file.
  bool ShowOpen(Dialogs& dialogs) {
    const std::optional<std::string> chosen =
        dialogs.openFile({DialogTitle, Filter, InitDir, DefaultExt});
    if (!chosen) return false;
    FileName = *chosen;
    FileTitle = nameWithoutFolder(FileName);
    return true;
  }
};

}  // namespace kelvaron
