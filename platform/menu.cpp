#include "platform/menu.h"

namespace kelvaron {

MenuItem::MenuItem(Form& owner, std::string_view name, std::string_view caption, State state)
    : form(owner),
      Name(name),
      Caption(*this, std::string(caption)),
      Visible(*this, state != State::hidden),
      Enabled(*this, state != State::greyed) {
  owner.menus_.push_back(this);
}

MenuItem::MenuItem(MenuItem& parent, std::string_view name, std::string_view caption, State state)
    : form(parent.form),
      Name(name),
      Caption(*this, std::string(caption)),
      Visible(*this, state != State::hidden),
      Enabled(*this, state != State::greyed) {
  parent.items_.push_back(this);
}

}  // namespace kelvaron
