#include "desktop/controls/entry_model.h"

#include "desktop/qt_values.h"

namespace kelvaron {

bool EntryModel::take(const std::vector<std::string>& entries) {
  if (entries == entries_) return false;
  beginResetModel();
  entries_ = entries;
  endResetModel();
  return true;
}

int EntryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant EntryModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  return shownText(beginningOf(entries_.at(static_cast<std::size_t>(index.row())), kMostOfEntry));
}

}  // namespace kelvaron
