// The list box: sorted entries of which several can be selected.
//
// Entries are sorted as they come, in runs that double, so that neither an `AddItem` nor whoever
// looks has more to do than to put together runs that are sorted already.
#pragma once

#include <cstdint>
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
  /// A file was dropped on an entry, which is the only one selected then: its path. Entries take
  /// files only where there is a handler.
  Event<std::string> FileDropped;

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
  /// What one entry is, where their number is to be seen; empty where not.
  std::string CountedAs;

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
  /// What there is of each entry, one behind the other.
  struct Rows {
    std::vector<std::string> entries;
    // The first eight characters in upper case, as a number that orders as they do.
    std::vector<std::uint64_t> fronts;
    std::vector<Flags> flags;

    std::size_t size() const { return entries.size(); }
    /// Whether the row belongs in front of another one's.
    bool isBefore(std::size_t row, const Rows& others, std::size_t other) const;
    void reserve(std::size_t count);
    /// Takes a row over.
    void take(Rows& from, std::size_t row);
    /// Puts all of `from` in place of the rows from `first` on; there are as many.
    void replaceFrom(std::size_t first, Rows& from);
  };

  void settle() const;
  void sortTail() const;
  void mergeLastRuns() const;

  mutable Rows rows_;
  // Where each run of sorted rows ends; what stands behind the last one waits to be sorted.
  mutable std::vector<std::size_t> runs_;
  // Identities selected, and the one with the focus, when the list was last cleared.
  std::set<std::string> remembered_;
  std::optional<std::string> rememberedCurrent_;
};

}  // namespace kelvaron
