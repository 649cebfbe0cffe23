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

  /// The label's mnemonic leads to the control behind it, which its caption names.
  void nameNext(ControlView& next) override;
  bool isBare() const override { return control()->container.asControl() == nullptr; }

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void fitText();

  QLabel& label_;
  QPointer<ControlView> buddy_;
};

}  // namespace kelvaron
