// A progress bar on the screen.
#pragma once

#include <QProgressBar>

#include "desktop/control_view.h"
#include "platform/progress_bar.h"

namespace kelvaron {

class ProgressBarView : public ControlView {
 public:
  ProgressBarView(ProgressBar& bar, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;

 private:
  QProgressBar& bar_;
};

}  // namespace kelvaron
