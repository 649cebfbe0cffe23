// The dialog that chooses a file to open.
#pragma once

#include <QFileDialog>
#include <functional>

#include "platform/ports.h"

class QLineEdit;

namespace kelvaron {

class FileBox : public QFileDialog {
 public:
  /// `folderBefore` is where the dialog starts when `dialog` names no folder that is there; empty
  /// for the user's own folder.
  FileBox(const FileDialog& dialog, const QString& folderBefore);

  /// What was chosen can't be taken, and why; the user chooses again afterwards. Must not throw.
  std::function<void(const QString& why)> onRefused;

  /// The full path of the file chosen.
  const QString& chosen() const { return chosen_; }

 protected:
  void accept() override;

 private:
  void nameParts();
  void showColumns();
  void refuse(const QString& why);
  QLineEdit& edit() const;
  QString path() const;

  const QString extension_;
  QString chosen_;
  QString refusal_;
};

}  // namespace kelvaron
