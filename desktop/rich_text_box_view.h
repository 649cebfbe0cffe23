// The chat view as a control on a form.
#pragma once

#include "desktop/chat_view.h"
#include "desktop/control_view.h"

namespace kelvaron {

class RichTextBoxView : public ControlView {
 public:
  RichTextBoxView(RichTextBox& box, ViewHost& host, QWidget* parent);

  bool takesKeyboard() const override { return true; }
  void detach() override;

 protected:
  void refresh() override;
};

}  // namespace kelvaron
