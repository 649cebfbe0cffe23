// A picture on the screen.
#pragma once

#include <QLabel>

#include "desktop/control_view.h"

namespace kelvaron {

/// Fits the picture into its place without distorting it, sharp at any scale of the screen.
class ImageView : public ControlView {
 public:
  ImageView(Image& image, ViewHost& host, QWidget* parent);

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QLabel& label_;
};

}  // namespace kelvaron
