#include "desktop/form_scale.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

#include "platform/form.h"

namespace kelvaron {
namespace {

constexpr qreal kDesignPoints = 9;
constexpr qreal kStep = 8;

qreal currentScale = 1;  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

}  // namespace

qreal formScaleFor(const QFont& font) {
  QFont design = font;
  design.setPointSizeF(kDesignPoints);
  // The wider of the two ways in which text grows: some fonts have heights in whole pixels only.
  const QFontMetricsF now(font);
  const QFontMetricsF then(design);
  const qreal grown =
      std::max(now.height() / then.height(), now.averageCharWidth() / then.averageCharWidth());
  return std::max<qreal>(1, std::ceil(grown * kStep - 0.01) / kStep);
}

void setFormScale(qreal scale) { currentScale = scale; }
qreal formScale() { return currentScale; }

qreal formScaleWithin(QSize form, QSize room) {
  const qreal fits = std::min(static_cast<qreal>(room.width()) / form.width(),
                              static_cast<qreal>(room.height()) / form.height()) *
                     kTwipsPerPixel;
  return std::clamp<qreal>(std::floor(fits * kStep) / kStep, 1, currentScale);
}

QFont formFontFor(qreal scale) {
  constexpr qreal kPoint = 0.5;
  QFont font = QGuiApplication::font();
  while (formScaleFor(font) > scale && font.pointSizeF() > kDesignPoints) {
    font.setPointSizeF(std::max(kDesignPoints, font.pointSizeF() - kPoint));
  }
  return font;
}

int toPixels(int twips, qreal scale) {
  return static_cast<int>(std::floor(twips * scale / kTwipsPerPixel + 0.01));
}

int toTwips(int pixels, qreal scale) {
  return static_cast<int>(std::ceil(pixels * kTwipsPerPixel / scale - 0.01));
}

}  // namespace kelvaron
