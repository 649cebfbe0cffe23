// A slider on the screen.
#pragma once

#include <QSlider>

#include "desktop/control_view.h"
#include "platform/slider.h"

namespace kelvaron {

/// A click beside the knob brings it there. The wheel turns it only while it has the keyboard.
class SliderView : public ControlView {
 public:
  SliderView(Slider& slider, ViewHost& host, QWidget* parent);

  bool takesKeyboard() const override { return true; }

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void moved(int value);
  Slider& slider() const { return static_cast<Slider&>(*control()); }

  QSlider& slider_;
};

}  // namespace kelvaron
