// The look of all windows: dark, with a pale green accent.
#pragma once

#include <QPalette>
#include <QProxyStyle>

class QApplication;

namespace kelvaron {

/// The colours that forms have unless they say otherwise.
QPalette darkPalette();

/// Fusion with more air, a focus that is seen, and flat scroll bars.
class Theme : public QProxyStyle {
 public:
  Theme();

  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returnData) const override;
  QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                     const QWidget* widget) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
};

/// Gives the application the theme.
void applyTheme(QApplication& application);

}  // namespace kelvaron
