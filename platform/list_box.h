// The list box: sorted entries of which several can be selected.
//
// A rebuild (`Clear` and then an `AddItem` for each entry) costs one sort however long it is, done
// when somebody looks.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace kelvaron {

class ListBox : public Control {
 public:
  enum class Selection { one, several };

  ListBox(Container& within, std::string_view name, Place place, bool isSorted,
          Selection selectionKind);

  Property<std::optional<Color>> ForeColor{*this, std::nullopt};
  Property<std::optional<Color>> BackColor{*this, std::nullopt};

  Event<> Click;
  Event<> DblClick;
  Event<MouseButton> MouseUp;

  /// Sorted lists order by upper case, equal entries in order of arrival; duplicates stay.
  void AddItem(std::string_view entry);
  /// Removes the entry at `index`. Fault 5 when there is none.
  void RemoveItem(int index);
  /// Empties the list. What was selected is remembered, so that an entry which comes back in a
  /// rebuild is selected again; see `identity`.
  void Clear();

  int ListCount() const { return static_cast<int>(entries().size()); }
  /// Fault 5 when there is no such entry.
  const std::string& List(int index) const;
  /// The entry with the focus, -1 for none. Setting selects it in a list of single selection.
  int ListIndex() const;
  void setListIndex(int index);
  bool Selected(int index) const;
  void setSelected(int index, bool selected);
  /// The entry that commands are about: the one at `ListIndex` if it is selected, else the only one
  /// that is; the empty string when there is none.
  std::string Text() const;

  const std::vector<std::string>& entries() const;

  /// Two entries with the same identity are the same thing before and after a rebuild. The whole
  /// entry unless set otherwise.
  std::function<std::string(std::string_view)> identity;

  const bool sorted;
  const Selection selection;

 private:
  struct Flags {
    bool selected = false;
    bool current = false;
  };
  std::string identityOf(std::string_view entry) const {
    return identity ? identity(entry) : std::string(entry);
  }
  void settle() const;

  // Entries behind `settled_` wait to be sorted in.
  mutable std::vector<std::string> entries_;
  mutable std::vector<Flags> flags_;
  mutable std::size_t settled_ = 0;
  // Identities selected, and the one with the focus, when the list was last cleared.
  std::set<std::string> remembered_;
  std::optional<std::string> rememberedCurrent_;
};

}  // namespace kelvaron
