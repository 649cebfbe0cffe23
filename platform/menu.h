// Menu entries: the menu bar of a form is those that stand directly in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/form.h"
#include "platform/property.h"

namespace kelvaron {

class MenuItem : public Observable {
 public:
  enum class State { shown, hidden, greyed };

  /// An entry of the menu bar. The caption "-" is a separator.
  MenuItem(Form& owner, std::string_view name, std::string_view caption,
           State state = State::shown);
  /// An entry of the submenu `parent`.
  MenuItem(MenuItem& parent, std::string_view name, std::string_view caption,
           State state = State::shown);

  Form& form;
  const std::string Name;
  Property<std::string> Caption;
  Property<bool> Visible;
  Property<bool> Enabled;
  Event<> Click;

  bool isSeparator() const { return Caption.get() == "-"; }
  const std::vector<MenuItem*>& items() const { return items_; }

 private:
  std::vector<MenuItem*> items_;
};

}  // namespace kelvaron
