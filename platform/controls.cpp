#include "platform/controls.h"

namespace kelvaron {

Control::Control(Container& within, ControlKind controlKind, std::string_view name, Place place)
    : kind(controlKind),
      Name(name),
      container(within),
      Left(*this, place.left),
      Top(*this, place.top),
      Width(*this, place.width),
      Height(*this, place.height) {
  within.form().controls_.push_back(this);
}

void Control::Move(Place place) {
  Left.setQuietly(place.left);
  Top.setQuietly(place.top);
  Width.setQuietly(place.width);
  Height.setQuietly(place.height);
  refresh();
}

Label::Label(Container& within, std::string_view name, Place place, std::string_view caption)
    : Control(within, ControlKind::label, name, place),
      Caption(*this, std::string(caption)),
      DesignCaption(caption) {}

TextBox::TextBox(Container& within, std::string_view name, Place place)
    : TextBox(within, ControlKind::textBox, name, place) {}

TextBox::TextBox(Container& within, ControlKind controlKind, std::string_view name, Place place)
    : Control(within, controlKind, name, place) {}

void TextBox::propertyChanged(const void* property) {
  Control::propertyChanged(property);
  if (property == &Text) Change();
}

RichTextLine::RichTextLine(Container& within, std::string_view name, Place place)
    : TextBox(within, ControlKind::richTextLine, name, place) {}

RichTextBox::RichTextBox(Container& within, std::string_view name, Place place)
    : Control(within, ControlKind::richTextBox, name, place) {}

CheckBox::CheckBox(Container& within, std::string_view name, Place place, std::string_view caption)
    : Control(within, ControlKind::checkBox, name, place), Caption(*this, std::string(caption)) {}

CommandButton::CommandButton(Container& within, std::string_view name, Place place,
                             std::string_view caption)
    : Control(within, ControlKind::button, name, place), Caption(*this, std::string(caption)) {}

Frame::Frame(Container& within, std::string_view name, Place place, std::string_view caption)
    : Control(within, ControlKind::frame, name, place), Caption(*this, std::string(caption)) {}

Image::Image(Container& within, std::string_view name, Place place, std::string_view picture)
    : Control(within, ControlKind::image, name, place), Picture(picture) {}

Timer::Timer(Container& within, std::string_view name, int interval, bool enabled)
    : Control(within, ControlKind::timer, name, {}), Interval(*this, interval) {
  Enabled.setQuietly(enabled);
}

}  // namespace kelvaron
