// A combo box on the screen.
#pragma once

#include <QComboBox>

#include "desktop/control_view.h"
#include "platform/combo_box.h"

namespace kelvaron {

/// What is typed stays as it was typed: nothing completes it, and nothing typed goes into the list.
/// A character that the code page lacks shows as the "?" that it became.
class ComboBoxView : public ControlView {
 public:
  ComboBoxView(ComboBox& box, ViewHost& host, QWidget* parent);

  bool takesKeyboard() const override { return true; }
  void setNameFromLabel(const QString& name) override;

 protected:
  void refresh() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void textEdited(const QString& text);
  void showText();
  ComboBox& box() const { return static_cast<ComboBox&>(*control()); }

  QComboBox& combo_;
  // What the widget's list was filled from.
  std::vector<std::string> items_;
};

}  // namespace kelvaron
