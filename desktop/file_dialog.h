// The dialog that chooses a file to open.
#pragma once

#include <QFileDialog>
#include <functional>

#include "platform/ports.h"

namespace kelvaron {

class FileBox : public QFileDialog {
 public:
  /// `folderBefore` is where the dialog starts when `dialog` names no folder that is there; empty
  /// for the user's own folder.
  FileBox(const FileDialog& dialog, const QString& folderBefore);

  /// A file was chosen whose full path has letters that the core's text lacks; the user chooses
  /// again afterwards. Must not throw.
  std::function<void(const QString& path)> onUnspeakable;

  /// The full path of the file chosen, and its folder.
  QString chosen() const { return selectedFiles().value(0); }
  QString folder() const { return directory().absolutePath(); }

 protected:
  void accept() override;

 private:
  void nameParts();
  void showColumns();
  void completeName();

  const QString extension_;
};

}  // namespace kelvaron
