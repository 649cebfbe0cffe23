#include "desktop/controls/entry_model.h"

#include <utility>

#include "desktop/qt_values.h"

namespace kelvaron {

bool EntryModel::take(const std::vector<std::string>& entries) {
  std::string text;
  std::vector<std::size_t> ends;
  ends.reserve(entries.size());
  for (const std::string& entry : entries) {
    text += beginningOf(entry, kMostOfEntry);
    ends.push_back(text.size());
  }
  if (ends == ends_ && text == text_) return false;
  beginResetModel();
  text_ = std::move(text);
  ends_ = std::move(ends);
  endResetModel();
  return true;
}

int EntryModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(ends_.size());
}

QVariant EntryModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const std::size_t begin = row == 0 ? 0 : ends_.at(row - 1);
  return shownText(std::string_view(text_).substr(begin, ends_.at(row) - begin));
}

}  // namespace kelvaron
