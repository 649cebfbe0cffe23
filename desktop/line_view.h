// A straight line on the screen.
#pragma once

#include "desktop/control_view.h"
#include "platform/line.h"

namespace kelvaron {

class LineView : public ControlView {
 public:
  LineView(Line& line, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;
  /// Its place comes from its ends.
  bool refreshesAtOnce() const override { return true; }
};

}  // namespace kelvaron
