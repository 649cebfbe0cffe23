#include "desktop/shell/theme_drawing.h"

#include <QWidget>
#include <algorithm>

#include "desktop/controls/views.h"
#include "desktop/form_scale.h"

namespace kelvaron::theme {
namespace {

// An arrow down in the middle of `rect`.
void drawArrow(QPainter& painter, const QRectF& rect, const QColor& color) {
  const qreal scale = std::min(formScale(), rect.width() / 16);
  const qreal halfWidth = 4.5 * scale;
  const qreal halfHeight = 2.5 * scale;
  const QPointF middle = rect.center();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, 1.8 * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(
      QPolygonF{{middle + QPointF(-halfWidth, -halfHeight), middle + QPointF(0, halfHeight),
                 middle + QPointF(halfWidth, -halfHeight)}});
  painter.restore();
}

bool enabled(const QStyleOption& option) { return option.state.testFlag(QStyle::State_Enabled); }

}  // namespace

void drawPanel(QPainter& painter, const QRectF& rect, const QBrush& fill, const QColor& line,
               qreal width) {
  const qreal inset = width / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(line, width));
  painter.setBrush(fill);
  painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), kRounding, kRounding);
  painter.restore();
}

const QColor& lineOf(const QStyleOption& option) {
  return option.state.testFlag(QStyle::State_HasFocus) ? kAccent : kLine;
}

void drawComboBox(const QStyle& style, const QStyleOptionComboBox& combo, QPainter& painter,
                  const QWidget* widget) {
  const bool over = enabled(combo) && combo.state.testFlag(QStyle::State_MouseOver);
  const QRect arrow =
      style.subControlRect(QStyle::CC_ComboBox, &combo, QStyle::SC_ComboBoxArrow, widget);
  const QColor button = combo.palette.color(QPalette::Button).lighter(over ? 120 : 100);
  if (combo.editable) {
    drawPanel(painter, combo.rect, combo.palette.color(QPalette::Base), lineOf(combo));
    painter.fillRect(arrow.adjusted(0, 2, -2, -2) & combo.rect.adjusted(2, 2, -2, -2), button);
  } else {
    const bool focus = combo.state.testFlag(QStyle::State_HasFocus);
    drawPanel(painter, combo.rect, button, focus ? kAccent : button.lighter(145));
  }
  drawArrow(painter, arrow, enabled(combo) ? (over ? kAccent : kText) : kDisabledText);
}

int comboArrowWidth(int height) {
  constexpr qreal kShare = 2.0 / 3;
  return qRound(height * kShare);
}

QRect comboPart(const QStyleOption& combo, QStyle::SubControl part, const QRect& usual) {
  const QRect& box = combo.rect;
  const int arrow = comboArrowWidth(box.height());
  const QRect beside = QStyle::visualRect(combo.direction, box, usual);
  const QRect place =
      part == QStyle::SC_ComboBoxArrow
          ? QRect(box.right() + 1 - arrow, beside.y(), arrow, beside.height())
          : QRect(beside.topLeft(), QPoint(box.right() - arrow - 1, beside.bottom()));
  return QStyle::visualRect(combo.direction, box, place);
}

void drawSlider(const QStyle& style, const QStyleOptionSlider& slider, QPainter& painter,
                const QWidget* widget) {
  constexpr qreal kGroove = 6;
  const QRectF knob =
      style.subControlRect(QStyle::CC_Slider, &slider, QStyle::SC_SliderHandle, widget);
  const QRectF place = slider.rect;
  const QRectF groove(place.left(), knob.center().y() - kGroove / 2, place.width(), kGroove);
  drawPanel(painter, groove, slider.palette.color(QPalette::Base), kLine);
  QRectF passed = groove;
  if (widget != nullptr && widget->property(kFillsBehind).toBool()) {
    passed.setLeft(knob.center().x());
  } else {
    passed.setRight(knob.center().x());
  }
  const bool works = enabled(slider);
  drawPanel(painter, passed, works ? kSelection : kButton, works ? kSelection.lighter(130) : kLine);

  const bool held = works && slider.activeSubControls.testFlag(QStyle::SC_SliderHandle) &&
                    slider.state.testAnyFlags(QStyle::State_Sunken | QStyle::State_MouseOver);
  const bool focus = slider.state.testFlag(QStyle::State_HasFocus);
  const qreal radius = std::min(knob.width(), knob.height()) / 2 - 1;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focus ? kAccent : kHandleHeld, focus ? 2 : 1));
  painter.setBrush(works ? (held ? kHandleHeld : kHandle) : kButton);
  painter.drawEllipse(knob.center(), radius, radius);
  painter.restore();
}

void drawProgress(const QStyleOptionProgressBar& bar, QPainter& painter) {
  const QRectF place = bar.rect;
  drawPanel(painter, place, bar.palette.color(QPalette::Base), kLine);
  const qreal range = static_cast<qreal>(bar.maximum) - bar.minimum;
  if (range <= 0 || bar.progress <= bar.minimum) return;
  QRectF filled = place.adjusted(2, 2, -2, -2);
  filled.setWidth(filled.width() * (bar.progress - bar.minimum) / range);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(enabled(bar) ? kAccent.darker(150) : kHandle);
  painter.drawRoundedRect(filled, kRounding - 1, kRounding - 1);
  painter.restore();
}

}  // namespace kelvaron::theme
