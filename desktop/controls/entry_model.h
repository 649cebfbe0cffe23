// The rows of a list on the screen.
#pragma once

#include <QAbstractListModel>
#include <cstddef>
#include <string>
#include <vector>

namespace kelvaron {

/// Characters shown of an entry; nobody reads further in a list.
constexpr std::size_t kMostOfEntry = 256;

/// A copy of the beginnings of a list's entries, taken at once; text is converted as rows come into
/// sight.
class EntryModel : public QAbstractListModel {
 public:
  using QAbstractListModel::QAbstractListModel;

  /// Takes other entries with one reset. Returns false, and does nothing, when they are the same.
  bool take(const std::vector<std::string>& entries);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  // One behind the other, and where each ends.
  std::string text_;
  std::vector<std::size_t> ends_;
};

}  // namespace kelvaron
