#include <QEvent>
#include <algorithm>

#include "desktop/controls/views.h"

namespace kelvaron {
namespace {

// The Page keys cross the slider in so many steps.
constexpr int kPages = 10;

}  // namespace

SliderView::SliderView(Slider& slider, ViewHost& host, QWidget* parent)
    : ControlView(slider, host, new QSlider(Qt::Horizontal, parent)),
      slider_(static_cast<QSlider&>(widget())) {
  slider_.setProperty(kFillsBehind, slider.FillsBehind);
  slider_.setFocusPolicy(Qt::StrongFocus);
  slider_.setRange(slider.Min, slider.Max);
  slider_.setPageStep(std::max(1, (slider.Max - slider.Min) / kPages));
  connect(&slider_, &QSlider::valueChanged, this, [this](int value) { moved(value); });
}

void SliderView::moved(int value) {
  if (showing() || !attached()) return;
  if (run([&] { slider().Value = value; })) {
    const Showing showing(*this);
    refresh();
  }
}

void SliderView::refresh() { slider_.setValue(slider().Value); }

bool SliderView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Wheel && !slider_.hasFocus()) {
    event->ignore();
    return true;
  }
  return ControlView::eventFilter(watched, event);
}

}  // namespace kelvaron
