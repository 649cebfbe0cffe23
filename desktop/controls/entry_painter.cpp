#include "desktop/controls/entry_painter.h"

#include <QPainter>
#include <algorithm>

#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

constexpr int kAround = 5;  // between a badge and its text, and the edges of the row

/// What stands behind the identity, without its brackets.
QString badgeOf(const std::string& entry, const std::string& identity) {
  if (!entry.starts_with(identity)) return {};
  QString tag = shownText(entry.substr(identity.size()));
  if (tag.startsWith('[') && tag.endsWith(']')) tag = tag.mid(1, tag.size() - 2);
  return tag;
}

}  // namespace

void EntryPainter::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const std::string entry = storedText(index.data().toString());
  const std::string identity = identity_ ? identity_(entry) : entry;
  const QString badge = badgeOf(entry, identity);
  if (badge.isEmpty()) return QStyledItemDelegate::paint(painter, option, index);

  QStyleOptionViewItem row(option);
  initStyleOption(&row, index);
  row.text = shownText(identity);
  QFont font = row.font;
  font.setPointSizeF(font.pointSizeF() * 0.85);
  const QFontMetrics metrics(font);
  const int width = metrics.horizontalAdvance(badge) + 2 * kAround;
  const int height = std::min(row.rect.height() - 2, metrics.height() + 2);
  const QRect place(row.rect.right() - width - kAround, row.rect.center().y() - height / 2 + 1,
                    width, height);
  const QWidget* widget = row.widget;
  // The row's ground whole, then the name as far as the badge leaves room.
  QStyleOptionViewItem ground(row);
  ground.text.clear();
  widget->style()->drawControl(QStyle::CE_ItemViewItem, &ground, painter, widget);
  row.rect.setRight(place.left() - 1);
  row.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
  row.backgroundBrush = Qt::NoBrush;
  widget->style()->drawControl(QStyle::CE_ItemViewItem, &row, painter, widget);

  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const QColor text = row.palette.color(
      row.state.testFlag(QStyle::State_Selected) ? QPalette::HighlightedText : QPalette::Text);
  painter->setPen(QPen(text, 1));
  painter->drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
  painter->setFont(font);
  painter->drawText(place, Qt::AlignCenter, badge);
  painter->restore();
}

}  // namespace kelvaron
