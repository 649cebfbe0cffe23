#include <QFile>
#include <QMouseEvent>
#include <QPixmap>
#include <cmath>

#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

constexpr int kFinestPicture = 3;

/// The picture in the resolution for a screen of so many device pixels per pixel, or in the next
/// one that there is.
QPixmap load(const std::string& name, qreal pixelRatio) {
  const QString stem = QStringLiteral(":/pictures/") + shownText(name);
  const int wanted = std::min(kFinestPicture, static_cast<int>(std::ceil(pixelRatio)));
  for (int resolution = wanted; resolution > 1; --resolution) {
    const QString path = QStringLiteral("%1@%2x.png").arg(stem).arg(resolution);
    if (QFile::exists(path)) return QPixmap(path);
  }
  return QPixmap(stem + QStringLiteral(".png"));
}

}  // namespace

ImageView::ImageView(Image& image, ViewHost& host, QWidget* parent)
    : ControlView(image, host, new QLabel(parent)), label_(static_cast<QLabel&>(widget())) {
  label_.setAlignment(Qt::AlignCenter);
  if (image.Click) label_.setCursor(Qt::PointingHandCursor);
}

void ImageView::refresh() {
  const qreal ratio = label_.devicePixelRatioF();
  QPixmap picture = load(image().Picture, ratio);
  if (picture.isNull() || label_.size().isEmpty()) {
    label_.clear();
    return;
  }
  picture = picture.scaled(label_.size() * ratio, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  picture.setDevicePixelRatio(ratio);
  label_.setPixmap(picture);
}

bool ImageView::pointerMoved() {
  if (!image().MouseMove) return false;
  image().MouseMove();
  return true;
}

bool ImageView::eventFilter(QObject* watched, QEvent* event) {
  if (!attached()) return false;
  if (event->type() == QEvent::Resize) refresh();
  if (event->type() == QEvent::MouseButtonRelease) {
    const auto* mouse = static_cast<QMouseEvent*>(event);
    if (mouse->button() == Qt::LeftButton && label_.rect().contains(mouse->pos())) {
      run([this] { image().Click(); });
      return true;
    }
  }
  // The press must be taken, or the release goes to the window behind the picture.
  if (event->type() == QEvent::MouseButtonPress) return true;
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
