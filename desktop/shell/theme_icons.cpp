#include "desktop/shell/theme_icons.h"

#include <QIconEngine>
#include <QPainterPath>
#include <algorithm>
#include <initializer_list>
#include <utility>

#include "desktop/shell/theme_drawing.h"

namespace kelvaron::theme {
namespace {

constexpr QColor kWarningSign{255, 190, 92};
constexpr QColor kCriticalSign{255, 116, 116};

/// An icon that is its drawing, at any size.
class Sign : public QIconEngine {
 public:
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
};

class BoxSign final : public Sign {
 public:
  explicit BoxSign(QStyle::StandardPixmap kind) : kind_(kind) {}

  QIconEngine* clone() const override { return new BoxSign(kind_); }

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

/// In a square of 16.
QPainterPath outline(QStyle::StandardPixmap kind) {
  QPainterPath path;
  const auto lines = [&](std::initializer_list<QPointF> points) {
    path.moveTo(*points.begin());
    for (const QPointF& point : points) path.lineTo(point);
  };
  switch (kind) {
    case QStyle::SP_DirIcon:
    case QStyle::SP_DirOpenIcon:
    case QStyle::SP_DirClosedIcon:
    case QStyle::SP_DirLinkIcon:
    case QStyle::SP_FileDialogNewFolder:
      lines({{2, 13}, {2, 3.5}, {6, 3.5}, {7.5, 5.5}, {14, 5.5}, {14, 13}, {2, 13}});
      break;
    case QStyle::SP_DirHomeIcon:
      lines({{2, 8}, {8, 2.5}, {14, 8}});
      lines({{4, 7}, {4, 13.5}, {12, 13.5}, {12, 7}});
      break;
    case QStyle::SP_FileIcon:
    case QStyle::SP_FileLinkIcon:
      lines({{4, 14}, {4, 2}, {9, 2}, {12, 5}, {12, 14}, {4, 14}});
      lines({{9, 2}, {9, 5}, {12, 5}});
      break;
    case QStyle::SP_ComputerIcon:
    case QStyle::SP_DesktopIcon:
    case QStyle::SP_DriveHDIcon:
      path.addRoundedRect(QRectF(2, 3, 12, 8), 1, 1);
      lines({{5, 13.5}, {11, 13.5}});
      break;
    case QStyle::SP_FileDialogBack:
    case QStyle::SP_ArrowBack:
    case QStyle::SP_ArrowLeft:
      lines({{9.5, 3.5}, {5, 8}, {9.5, 12.5}});
      break;
    case QStyle::SP_ArrowForward:
    case QStyle::SP_ArrowRight:
      lines({{6.5, 3.5}, {11, 8}, {6.5, 12.5}});
      break;
    case QStyle::SP_FileDialogToParent:
      lines({{4, 7}, {8, 3}, {12, 7}});
      lines({{8, 3}, {8, 13}});
      break;
    case QStyle::SP_FileDialogListView:
      for (const qreal y : {4.0, 8.0, 12.0}) lines({{3, y}, {13, y}});
      break;
    case QStyle::SP_FileDialogDetailedView:
      for (const qreal y : {4.0, 8.0, 12.0}) {
        lines({{3, y}, {8, y}});
        lines({{11, y}, {13, y}});
      }
      break;
    default:
      break;
  }
  return path;
}

class FileSign final : public Sign {
 public:
  explicit FileSign(const QPainterPath& path) : path_(path) {}

  QIconEngine* clone() const override { return new FileSign(path_); }

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    constexpr qreal kSide = 16;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    const qreal scale = std::min(rect.width(), rect.height()) / kSide;
    painter->scale(scale, scale);
    painter->setPen(QPen(mode == QIcon::Disabled ? kDisabledText : kText, 1.3, Qt::SolidLine,
                         Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(path_);
    painter->restore();
  }

 private:
  QPainterPath path_;
};

}  // namespace

QIcon boxIcon(QStyle::StandardPixmap kind) { return QIcon(new BoxSign(kind)); }

QIcon fileSign(QStyle::StandardPixmap kind) {
  const QPainterPath path = outline(kind);
  return path.isEmpty() ? QIcon() : QIcon(new FileSign(path));
}

}  // namespace kelvaron::theme
