// A label on the screen.
#pragma once

#include <QLabel>

#include "desktop/controls/control_view.h"

namespace kelvaron {

/// Shows plain text only: what a stranger wrote is never read as markup. What does not fit is cut
/// with "…"; a screen reader still gets all of it.
class LabelView : public ControlView {
 public:
  LabelView(Label& label, ViewHost& host, QWidget* parent);

  /// The control behind the label: its mnemonic leads there, and its caption names it.
  void setBuddy(ControlView& buddy);

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fitText();

  QLabel& label_;
  QPointer<ControlView> buddy_;
};

}  // namespace kelvaron
