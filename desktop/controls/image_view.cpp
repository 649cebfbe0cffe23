#include <QFile>
#include <QMouseEvent>
#include <QPixmap>

#include "desktop/controls/views.h"
#include "desktop/qt_values.h"

namespace kelvaron {
namespace {

constexpr int kFinestPicture = 3;

/// The picture in the resolution that fits `place` (in device pixels) as it is, else in the finest:
/// from few pixels to about as many it would blur.
QPixmap load(const std::string& name, QSize place) {
  const QString stem = QStringLiteral(":/pictures/") + shownText(name);
  QPixmap picture(stem + QStringLiteral(".png"));
  const QSize shown = picture.size().scaled(place, Qt::KeepAspectRatio);
  for (int resolution = 2; resolution <= kFinestPicture && picture.size() != shown; ++resolution) {
    const QString path = QStringLiteral("%1@%2x.png").arg(stem).arg(resolution);
    if (QFile::exists(path)) picture = QPixmap(path);
  }
  return picture;
}

}  // namespace

ImageView::ImageView(Image& image, ViewHost& host, QWidget* parent)
    : ControlView(image, host, new QLabel(parent)), label_(static_cast<QLabel&>(widget())) {
  label_.setAlignment(Qt::AlignCenter);
  if (image.Click) label_.setCursor(Qt::PointingHandCursor);
}

void ImageView::refresh() {
  const qreal ratio = label_.devicePixelRatioF();
  const QSize place = label_.size() * ratio;
  QPixmap picture = load(image().Picture, place);
  if (picture.isNull() || place.isEmpty()) {
    label_.clear();
    return;
  }
  picture = picture.scaled(place, Qt::KeepAspectRatio, Qt::SmoothTransformation);
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
