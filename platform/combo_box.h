// The combo box: a text that can be typed or chosen from a list.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/control.h"
#include "platform/form.h"

namespace kelvaron {

class ComboBox : public Control {
 public:
  ComboBox(Container& within, std::string_view name, Place place)
      : Control(within, ControlKind::comboBox, name, place) {}

  /// What stands in the field; in step with every keystroke, code page 1252.
  Property<std::string> Text{*this, {}};

  void AddItem(std::string_view entry) {
    items_.emplace_back(entry);
    refresh();
  }
  /// Empties the list and the field.
  void Clear() {
    items_.clear();
    Text.setQuietly({});
    refresh();
  }
  const std::vector<std::string>& items() const { return items_; }

 private:
  std::vector<std::string> items_;
};

}  // namespace kelvaron
