#include <QEvent>
#include <QPainter>
#include <QPixmap>
#include <QRadialGradient>
#include <algorithm>

#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

// Of the place's smaller side: what the lamp takes. The rest is for its glow.
constexpr qreal kLampShare = 0.64;

QPixmap lamp(QSize size, qreal pixelRatio, const QColor& fill, bool lit) {
  QPixmap picture(size * pixelRatio);
  picture.setDevicePixelRatio(pixelRatio);
  picture.fill(Qt::transparent);
  const QPointF middle(size.width() / 2.0, size.height() / 2.0);
  const qreal whole = std::min(size.width(), size.height()) / 2.0;
  const qreal radius = whole * kLampShare;

  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  if (lit) {
    QColor glow = fill;
    QRadialGradient around(middle, whole);
    glow.setAlphaF(0.55F);
    around.setColorAt(kLampShare, glow);
    glow.setAlphaF(0);
    around.setColorAt(1, glow);
    painter.setPen(Qt::NoPen);
    painter.setBrush(around);
    painter.drawEllipse(middle, whole, whole);
  }
  // Light from above, so that the lamp looks round.
  QRadialGradient body(middle - QPointF(radius, radius) * 0.3, radius * 1.5);
  body.setColorAt(0, fill.lighter(lit ? 150 : 125));
  body.setColorAt(0.6, fill);
  body.setColorAt(1, fill.darker(130));
  painter.setBrush(body);
  painter.setPen(QPen(fill.lighter(lit ? 130 : 160), 1));
  painter.drawEllipse(middle, radius - 0.5, radius - 0.5);
  return picture;
}

}  // namespace

ShapeView::ShapeView(Shape& shape, ViewHost& host, QWidget* parent)
    : ControlView(shape, host, new QLabel(parent)), label_(static_cast<QLabel&>(widget())) {
  label_.setAlignment(Qt::AlignCenter);
}

void ShapeView::refresh() {
  const auto& shape = static_cast<const Shape&>(*control());
  label_.setAccessibleDescription(shape.lit() ? QStringLiteral("lit") : QStringLiteral("unlit"));
  if (!shape.AccessibleName.empty()) {
    label_.setToolTip(shownText(shape.AccessibleName) +
                      (shape.lit() ? QStringLiteral(": yes") : QStringLiteral(": no")));
  }
  if (label_.size().isEmpty()) {
    label_.clear();
  } else {
    label_.setPixmap(
        lamp(label_.size(), label_.devicePixelRatioF(), toQt(shape.FillColor.get()), shape.lit()));
  }
}

bool ShapeView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && attached()) refresh();
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
