#include "desktop/file_dialog.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QTreeView>

#include "desktop/combo_accessible.h"
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

void FileBox::completeName() {
  auto* edit = findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (edit == nullptr || extension_.isEmpty()) return;
  const QFileInfo typed(directory(), edit->text());
  if (edit->text().isEmpty() || typed.exists() || typed.fileName().contains('.')) return;
  edit->setText(edit->text() + '.' + extension_);
}

void FileBox::accept() {
  completeName();
  const QString path = chosen();
  if (QFileInfo(path).isFile() && shownText(storedText(path)) != path) {
    if (onUnspeakable) onUnspeakable(path);
    return;
  }
  QFileDialog::accept();
}

}  // namespace kelvaron
