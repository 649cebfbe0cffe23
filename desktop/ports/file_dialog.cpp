#include "desktop/ports/file_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <utility>

#include "desktop/controls/combo_accessible.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

// Size at the start, in device-independent pixels.
constexpr QSize kSize{760, 460};
// Of the list of files: tells what the name's ending tells.
constexpr int kTypeColumn = 2;

/// A folder as the core tells it, which may have a sign at its end; empty when it isn't there.
QString knownFolder(const std::string& told) {
  QString folder = shownText(told);
  while (folder.size() > 1 && (folder.endsWith('/') || folder.endsWith('\\'))) folder.chop(1);
  return QDir::isAbsolutePath(folder) && QFileInfo(folder).isDir() ? folder : QString();
}

QStringList filters(const std::string& told) {
  const QString all = QStringLiteral("All files (*)");
  const QString filter = shownText(told).trimmed();
  if (filter.isEmpty()) return {all};
  // Words are a name for all files.
  if (!filter.contains('*') && !filter.contains('?')) {
    return {QStringLiteral("%1 (*)").arg(filter)};
  }
  return {QStringLiteral("%1 (%1)").arg(QString(filter).replace(';', ' ')), all};
}

}  // namespace

FileBox::FileBox(const FileDialog& dialog, const QString& folderBefore)
    : extension_(shownText(dialog.defaultExtension)) {
  installComboAccessibility();
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                 Qt::WindowCloseButtonHint);
  setWindowTitle(dialog.title.empty() ? QStringLiteral("Open") : shownText(dialog.title));
  setOption(DontUseNativeDialog);
  // Nothing is to be made, renamed or deleted here.
  setOption(ReadOnly);
  setOption(HideNameFilterDetails);
  setFileMode(ExistingFile);
  setViewMode(Detail);
  setNameFilters(filters(dialog.filter));
  QString folder = knownFolder(dialog.initialFolder);
  if (folder.isEmpty() && QFileInfo(folderBefore).isDir()) folder = folderBefore;
  setDirectory(folder.isEmpty() ? QDir::homePath() : folder);
  nameParts();
  showColumns();
  // The toolkit takes the button away for a name without its extension.
  connect(&edit(), &QLineEdit::textChanged, this, [this](const QString& text) {
    if (auto* box = findChild<QDialogButtonBox*>(); box != nullptr && !text.isEmpty()) {
      box->button(QDialogButtonBox::Open)->setEnabled(true);
    }
  });
  resize(kSize);
}

void FileBox::showColumns() {
  auto* files = findChild<QTreeView*>(QStringLiteral("treeView"));
  if (files == nullptr) return;
  files->hideColumn(kTypeColumn);
  QHeaderView& header = *files->header();
  header.setStretchLastSection(false);
  header.setResizeContentsPrecision(0);  // the files in sight
  header.setSectionResizeMode(QHeaderView::ResizeToContents);
  header.setSectionResizeMode(0, QHeaderView::Stretch);
}

void FileBox::nameParts() {
  const std::pair<const char*, const char*> names[] = {
      {"listView", "Files"},      {"treeView", "Files"},         {"sidebar", "Places"},
      {"lookInCombo", "Look in"}, {"fileNameEdit", "File name"}, {"fileTypeCombo", "File type"},
  };
  for (const auto& [part, name] : names) {
    if (auto* widget = findChild<QWidget*>(QString::fromLatin1(part))) {
      widget->setAccessibleName(QString::fromLatin1(name));
    }
  }
}

QLineEdit& FileBox::edit() const { return *findChild<QLineEdit*>(QStringLiteral("fileNameEdit")); }

/// What the user means: a selected file stands in the edit too.
QString FileBox::path() const {
  QString typed = edit().text();
  if (typed.isEmpty()) return selectedFiles().value(0);
  if (typed.startsWith(QStringLiteral("~/"))) typed.replace(0, 1, QDir::homePath());
  const QFileInfo file(directory(), typed);
  const bool complete = file.exists() || file.fileName().contains('.') || extension_.isEmpty();
  return QDir::cleanPath(file.absoluteFilePath() + (complete ? QString() : '.' + extension_));
}

/// In the next turn: one Enter in the edit accepts twice.
void FileBox::refuse(const QString& why) {
  const bool waits = !refusal_.isEmpty();
  refusal_ = why;
  if (waits) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        onRefused(std::exchange(refusal_, {}));
        edit().setFocus();
        edit().selectAll();
      },
      Qt::QueuedConnection);
}

void FileBox::accept() {
  const QString chosen = path();
  const QFileInfo file(chosen);
  if (chosen.isEmpty()) return;
  if (file.isDir()) {
    setDirectory(chosen);
    edit().clear();
  } else if (!file.exists()) {
    refuse(QStringLiteral("There is no such file:\n\n%1").arg(chosen));
  } else if (shownText(storedText(chosen)) != chosen) {
    refuse(QStringLiteral("Kelvaron can't open this file, because its name or that of its folder "
                          "has letters outside the Western alphabet:\n\n%1\n\nRename it, or "
                          "choose another file.")
               .arg(chosen));
  } else {
    chosen_ = chosen;
    // The toolkit's own acceptance would look the file up again, by its own rules.
    QDialog::accept();  // NOLINT(bugprone-parent-virtual-call)
  }
}

}  // namespace kelvaron
