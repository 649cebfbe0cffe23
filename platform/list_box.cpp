#include "platform/list_box.h"

#include <algorithm>
#include <numeric>

#include "base/code_page.h"
#include "platform/fault.h"

namespace kelvaron {

ListBox::ListBox(Container& within, std::string_view name, Place place, bool isSorted,
                 Selection selectionKind)
    : Control(within, ControlKind::listBox, name, place),
      sorted(isSorted),
      selection(selectionKind) {}

void ListBox::AddItem(std::string_view entry) {
  Flags flags;
  if (!remembered_.empty() || rememberedCurrent_) {
    const std::string id = identityOf(entry);
    flags.selected = remembered_.erase(id) > 0;
    flags.current = rememberedCurrent_ == id;
    if (flags.current) rememberedCurrent_.reset();
  }
  entries_.emplace_back(entry);
  flags_.push_back(flags);
  if (!sorted) settled_ = entries_.size();
  refresh();
}

void ListBox::RemoveItem(int index) {
  List(index);
  entries_.erase(entries_.begin() + index);
  flags_.erase(flags_.begin() + index);
  settled_ = entries_.size();
  refresh();
}

void ListBox::Clear() {
  settle();
  // An empty list keeps what it remembers: two clears in a row are one rebuild.
  if (!entries_.empty()) {
    remembered_.clear();
    rememberedCurrent_.reset();
  }
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (flags_[i].selected) remembered_.insert(identityOf(entries_[i]));
    if (flags_[i].current) rememberedCurrent_ = identityOf(entries_[i]);
  }
  entries_.clear();
  flags_.clear();
  settled_ = 0;
  refresh();
}

const std::string& ListBox::List(int index) const {
  const auto& all = entries();
  if (index < 0 || static_cast<std::size_t>(index) >= all.size()) {
    throw Fault(fault_number::kInvalidCall, "The list " + Name + " has no such entry");
  }
  return all[static_cast<std::size_t>(index)];
}

int ListBox::ListIndex() const {
  settle();
  const auto current = std::ranges::find_if(flags_, &Flags::current);
  return current == flags_.end() ? -1 : static_cast<int>(current - flags_.begin());
}

void ListBox::setListIndex(int index) {
  if (index >= 0) List(index);
  for (Flags& flags : flags_) {
    flags.current = false;
    if (selection == Selection::one) flags.selected = false;
  }
  rememberedCurrent_.reset();
  if (index >= 0) {
    Flags& flags = flags_[static_cast<std::size_t>(index)];
    flags.current = true;
    if (selection == Selection::one) flags.selected = true;
  }
  refresh();
}

bool ListBox::Selected(int index) const {
  List(index);
  return flags_[static_cast<std::size_t>(index)].selected;
}

void ListBox::setSelected(int index, bool selected) {
  List(index);
  flags_[static_cast<std::size_t>(index)].selected = selected;
  refresh();
}

std::string ListBox::Text() const {
  const int index = ListIndex();
  if (index >= 0 && Selected(index)) return List(index);
  if (std::ranges::count(flags_, true, &Flags::selected) != 1) return {};
  return List(static_cast<int>(std::ranges::find(flags_, true, &Flags::selected) - flags_.begin()));
}

const std::vector<std::string>& ListBox::entries() const {
  settle();
  return entries_;
}

void ListBox::settle() const {
  if (settled_ == entries_.size()) return;
  struct Keyed {
    std::string key;
    std::size_t from;
  };
  std::vector<Keyed> order(entries_.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = {upper(entries_[i]), i};
  std::ranges::stable_sort(order, {}, &Keyed::key);

  std::vector<std::string> entries(order.size());
  std::vector<Flags> flags(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    entries[i] = std::move(entries_[order[i].from]);
    flags[i] = flags_[order[i].from];
  }
  entries_ = std::move(entries);
  flags_ = std::move(flags);
  settled_ = entries_.size();
}

}  // namespace kelvaron
