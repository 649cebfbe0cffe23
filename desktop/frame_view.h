// A frame with controls in it.
#pragma once

#include <QGroupBox>

#include "desktop/control_view.h"

namespace kelvaron {

class FrameView : public ControlView {
 public:
  FrameView(Frame& frame, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;
};

}  // namespace kelvaron
