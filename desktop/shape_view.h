// A lamp on the screen.
#pragma once

#include <QLabel>

#include "desktop/control_view.h"
#include "platform/shape.h"

namespace kelvaron {

/// Round, in the middle of its place, and with a glow while it is lit. A screen reader hears "lit"
/// or "unlit" as its description.
class ShapeView : public ControlView {
 public:
  ShapeView(Shape& shape, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel& label_;
};

}  // namespace kelvaron
