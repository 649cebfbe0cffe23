// The colours of the theme, and how it draws what the toolkit's own style doesn't.
#pragma once

#include <QColor>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace kelvaron::theme {

inline constexpr QColor kWindow{24, 26, 32};
inline constexpr QColor kText{224, 226, 232};
inline constexpr QColor kField{15, 17, 21};
inline constexpr QColor kButton{44, 49, 60};
inline constexpr QColor kAccent{128, 226, 180};
inline constexpr QColor kSelection{38, 96, 84};
inline constexpr QColor kDisabledText{136, 141, 152};
inline constexpr QColor kMenu{33, 37, 45};
/// Of borders and handles: 3 to 1 against each ground of the theme, as a test computes.
inline constexpr QColor kLine{104, 112, 128};
inline constexpr QColor kHandle{104, 113, 130};
inline constexpr QColor kHandleHeld{120, 132, 154};

/// Radius of corners, in device-independent pixels.
inline constexpr qreal kRounding = 3;

/// A rounded rectangle whose line lies within `rect`.
void drawPanel(QPainter& painter, const QRectF& rect, const QBrush& fill, const QColor& line,
               qreal width = 1);
/// The line around something that may have the keyboard.
const QColor& lineOf(const QStyleOption& option);

/// A field to type in or, where the box is not editable, a button; with an arrow down.
void drawComboBox(const QStyle& style, const QStyleOptionComboBox& combo, QPainter& painter,
                  const QWidget* widget);
/// How wide the arrow of a combo box of this height is.
int comboArrowWidth(int height);
/// The place of a combo box's arrow or of what stands beside it; `usual` is that of the toolkit.
QRect comboPart(const QStyleOption& combo, QStyle::SubControl part, const QRect& usual);
/// A groove, filled up to a round knob or behind it (`kFillsBehind`). Horizontal ones only.
void drawSlider(const QStyle& style, const QStyleOptionSlider& slider, QPainter& painter,
                const QWidget* widget);
/// The groove of a progress bar, and how full it is, from the left.
void drawProgress(const QStyleOptionProgressBar& bar, QPainter& painter);

}  // namespace kelvaron::theme
