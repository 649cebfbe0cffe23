#include "desktop/controls/button_view.h"
#include "desktop/controls/control_view.h"
#include "desktop/controls/input_line_view.h"
#include "desktop/controls/label_view.h"
#include "desktop/controls/list_box_view.h"
#include "desktop/controls/text_box_view.h"
#include "desktop/controls/views.h"

namespace kelvaron {
namespace {

std::unique_ptr<ControlView> make(Control& control, ViewHost& host, QWidget* parent) {
  switch (control.kind) {
    case ControlKind::label:
      return std::make_unique<LabelView>(static_cast<Label&>(control), host, parent);
    case ControlKind::richTextLine:
      return std::make_unique<InputLineView>(static_cast<TextBox&>(control), host, parent);
    case ControlKind::textBox:
      if (auto& box = static_cast<TextBox&>(control); box.MultiLine) {
        return std::make_unique<TextAreaView>(box, host, parent);
      } else {
        return std::make_unique<TextLineView>(box, host, parent);
      }
    case ControlKind::richTextBox:
      return std::make_unique<RichTextBoxView>(static_cast<RichTextBox&>(control), host, parent);
    case ControlKind::listBox:
      return std::make_unique<ListBoxView>(static_cast<ListBox&>(control), host, parent);
    case ControlKind::checkBox:
      return std::make_unique<CheckBoxView>(static_cast<CheckBox&>(control), host, parent);
    case ControlKind::button:
      return std::make_unique<ButtonView>(static_cast<CommandButton&>(control), host, parent);
    case ControlKind::frame:
      return std::make_unique<FrameView>(static_cast<Frame&>(control), host, parent);
    case ControlKind::image:
      return std::make_unique<ImageView>(static_cast<Image&>(control), host, parent);
    case ControlKind::comboBox:
      return std::make_unique<ComboBoxView>(static_cast<ComboBox&>(control), host, parent);
    case ControlKind::shape:
      return std::make_unique<ShapeView>(static_cast<Shape&>(control), host, parent);
    case ControlKind::progressBar:
      return std::make_unique<ProgressBarView>(static_cast<ProgressBar&>(control), host, parent);
    case ControlKind::slider:
      return std::make_unique<SliderView>(static_cast<Slider&>(control), host, parent);
    case ControlKind::line:  // no form of the client has one
    case ControlKind::timer:
      break;
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<ControlView> makeView(Control& control, ViewHost& host, QWidget* parent) {
  std::unique_ptr<ControlView> view = make(control, host, parent);
  if (view) view->attach();
  return view;
}

}  // namespace kelvaron
