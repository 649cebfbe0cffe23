#include <map>

#include "desktop/controls/button_view.h"
#include "desktop/controls/control_view.h"
#include "desktop/controls/input_line_view.h"
#include "desktop/controls/label_view.h"
#include "desktop/controls/list_box_view.h"
#include "desktop/controls/text_box_view.h"
#include "desktop/controls/views.h"

namespace kelvaron {
namespace {

template <class View, class Kind>
std::unique_ptr<ControlView> make(Control& control, ViewHost& host, QWidget* parent) {
  return std::make_unique<View>(static_cast<Kind&>(control), host, parent);
}

std::unique_ptr<ControlView> makeTextBox(Control& control, ViewHost& host, QWidget* parent) {
  const bool lines = static_cast<TextBox&>(control).MultiLine;
  return (lines ? make<TextAreaView, TextBox> : make<TextLineView, TextBox>)(control, host, parent);
}

const std::map<ControlKind, decltype(&makeTextBox)> kViews = {
    {ControlKind::label, make<LabelView, Label>},
    {ControlKind::richTextLine, make<InputLineView, TextBox>},
    {ControlKind::textBox, makeTextBox},
    {ControlKind::richTextBox, make<RichTextBoxView, RichTextBox>},
    {ControlKind::listBox, make<ListBoxView, ListBox>},
    {ControlKind::checkBox, make<CheckBoxView, CheckBox>},
    {ControlKind::button, make<ButtonView, CommandButton>},
    {ControlKind::frame, make<FrameView, Frame>},
    {ControlKind::image, make<ImageView, Image>},
    {ControlKind::comboBox, make<ComboBoxView, ComboBox>},
    {ControlKind::shape, make<ShapeView, Shape>},
    {ControlKind::progressBar, make<ProgressBarView, ProgressBar>},
    {ControlKind::slider, make<SliderView, Slider>},
};

}  // namespace

std::unique_ptr<ControlView> makeView(Control& control, ViewHost& host, QWidget* parent) {
  const auto found = kViews.find(control.kind);
  if (found == kViews.end()) return nullptr;
  std::unique_ptr<ControlView> view = found->second(control, host, parent);
  view->attach();
  return view;
}

}  // namespace kelvaron
