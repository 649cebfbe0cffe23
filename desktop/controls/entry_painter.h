// Paints the rows of a list: what an entry has behind its identity, such as a state, as a badge.
#pragma once

#include <QStyledItemDelegate>
#include <functional>
#include <string>
#include <string_view>

namespace kelvaron {

/// The entry's text itself stays whole, for copying and for screen readers.
class EntryPainter : public QStyledItemDelegate {
 public:
  using Identity = std::function<std::string(std::string_view entry)>;
  /// Without an identity entries have no badges.
  EntryPainter(Identity identity, QObject* parent)
      : QStyledItemDelegate(parent), identity_(std::move(identity)) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;

 private:
  const Identity identity_;
};

}  // namespace kelvaron
