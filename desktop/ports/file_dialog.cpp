#include "desktop/ports/file_dialog.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QListView>
#include <QSplitter>
#include <QStyle>
#include <QTreeView>

#include "desktop/controls/combo_accessible.h"
#include "desktop/form_scale.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

// Size at the start, in device-independent pixels.
constexpr QSize kSize{760, 460};
constexpr int kKindColumn = 2;

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

void prepareFileDialog(QFileDialog& dialog, const FileDialog& told, const QString& folderBefore) {
  installComboAccessibility();
  dialog.setWindowTitle(told.title.empty() ? QStringLiteral("Open") : shownText(told.title));
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  // Nothing is to be made, renamed or deleted here.
  dialog.setOption(QFileDialog::ReadOnly);
  dialog.setOption(QFileDialog::HideNameFilterDetails);
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setViewMode(QFileDialog::Detail);
  dialog.setNameFilters(filters(told.filter));
  dialog.setDefaultSuffix(shownText(told.defaultExtension));
  QString folder = knownFolder(told.initialFolder);
  if (folder.isEmpty() && QFileInfo(folderBefore).isDir()) folder = folderBefore;
  dialog.setDirectory(folder.isEmpty() ? QDir::homePath() : folder);
  dialog.resize(kSize * formScale());
  // Names take what dates and sizes, seen whole, leave; of what kind a file is says its name.
  if (auto* files = dialog.findChild<QTreeView*>()) {
    files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    files->hideColumn(kKindColumn);
  }
  // The places beside them are as wide as their names.
  auto* places = dialog.findChild<QListView*>(QStringLiteral("sidebar"));
  if (auto* halves = dialog.findChild<QSplitter*>(); halves != nullptr && places != nullptr) {
    const int names = places->sizeHintForColumn(0) + 4 * places->frameWidth() +
                      places->style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    halves->setSizes({names, dialog.width() - names});
  }
}

}  // namespace kelvaron
