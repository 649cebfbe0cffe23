#include "desktop/shell/theme_icons.h"

#include <QIconEngine>
#include <algorithm>

#include "desktop/shell/theme_drawing.h"

namespace kelvaron::theme {
namespace {

constexpr QColor kWarningSign{255, 190, 92};
constexpr QColor kCriticalSign{255, 116, 116};

class BoxSign final : public QIconEngine {
 public:
  explicit BoxSign(QStyle::StandardPixmap kind) : kind_(kind) {}

  QIconEngine* clone() const override { return new BoxSign(kind_); }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    // All that follows is drawn in a square of 32.
    constexpr qreal kSide = 32;
    painter->translate(rect.topLeft());
    const qreal scale = std::min(rect.width(), rect.height()) / kSide;
    painter->scale(scale, scale);
    const QColor color = kind_ == QStyle::SP_MessageBoxWarning    ? kWarningSign
                         : kind_ == QStyle::SP_MessageBoxCritical ? kCriticalSign
                                                                  : kAccent;
    painter->setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QColor ground = color;
    ground.setAlphaF(0.16F);
    painter->setBrush(ground);
    if (kind_ == QStyle::SP_MessageBoxWarning) {
      painter->drawPolygon(QPolygonF{{QPointF(16, 3), QPointF(30, 28), QPointF(2, 28)}});
    } else {
      painter->drawEllipse(QRectF(2, 2, 28, 28));
    }
    painter->setPen(QPen(color, 3, Qt::SolidLine, Qt::RoundCap));
    switch (kind_) {
      case QStyle::SP_MessageBoxWarning:
        painter->drawLine(QPointF(16, 12), QPointF(16, 18.5));
        painter->drawPoint(QPointF(16, 24));
        break;
      case QStyle::SP_MessageBoxCritical:
        painter->drawLine(QPointF(11.5, 11.5), QPointF(20.5, 20.5));
        painter->drawLine(QPointF(20.5, 11.5), QPointF(11.5, 20.5));
        break;
      default:
        painter->drawPoint(QPointF(16, 9.5));
        painter->drawLine(QPointF(16, 15), QPointF(16, 22.5));
    }
    painter->restore();
  }

 private:
  QStyle::StandardPixmap kind_;
};

}  // namespace

QIcon boxIcon(QStyle::StandardPixmap kind) { return QIcon(new BoxSign(kind)); }

}  // namespace kelvaron::theme
