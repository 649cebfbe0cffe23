#include "platform/list_box.h"

#include <algorithm>
#include <numeric>

#include "base/code_page.h"
#include "platform/fault.h"

namespace kelvaron {
namespace {

// So many entries are sorted at once; a power of two of such runs is put together.
constexpr std::size_t kRun = 4096;

std::uint64_t frontOf(std::string_view entry) {
  std::uint64_t front = 0;
  for (std::size_t i = 0; i < sizeof front; ++i) {
    const char character = i < entry.size() ? upper(entry[i]) : '\0';
    front = front << 8U | static_cast<unsigned char>(character);
  }
  return front;
}

}  // namespace

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
  rows_.entries.emplace_back(entry);
  rows_.fronts.push_back(frontOf(entry));
  rows_.flags.push_back(flags);
  if (sorted && rows_.size() - (runs_.empty() ? 0 : runs_.back()) == kRun) {
    sortTail();
    const auto length = [this](std::size_t run) {
      return runs_[run] - (run == 0 ? 0 : runs_[run - 1]);
    };
    while (runs_.size() > 1 && length(runs_.size() - 2) <= length(runs_.size() - 1)) {
      mergeLastRuns();
    }
  }
  refresh();
}

void ListBox::RemoveItem(int index) {
  List(index);
  rows_.entries.erase(rows_.entries.begin() + index);
  rows_.fronts.erase(rows_.fronts.begin() + index);
  rows_.flags.erase(rows_.flags.begin() + index);
  if (sorted) runs_ = {rows_.size()};
  refresh();
}

void ListBox::Clear() {
  settle();
  // An empty list keeps what it remembers: two clears in a row are one rebuild.
  if (rows_.size() > 0) {
    remembered_.clear();
    rememberedCurrent_.reset();
  }
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_.flags[i].selected) remembered_.insert(identityOf(rows_.entries[i]));
    if (rows_.flags[i].current) rememberedCurrent_ = identityOf(rows_.entries[i]);
  }
  rows_ = {};
  runs_.clear();
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
  const auto current = std::ranges::find_if(rows_.flags, &Flags::current);
  return current == rows_.flags.end() ? -1 : static_cast<int>(current - rows_.flags.begin());
}

void ListBox::setListIndex(int index) {
  if (index >= 0) List(index);
  for (Flags& flags : rows_.flags) {
    flags.current = false;
    if (selection == Selection::one) flags.selected = false;
  }
  rememberedCurrent_.reset();
  if (index >= 0) {
    Flags& flags = rows_.flags[static_cast<std::size_t>(index)];
    flags.current = true;
    if (selection == Selection::one) flags.selected = true;
  }
  refresh();
}

bool ListBox::Selected(int index) const {
  List(index);
  return rows_.flags[static_cast<std::size_t>(index)].selected;
}

void ListBox::setSelected(int index, bool selected) {
  List(index);
  rows_.flags[static_cast<std::size_t>(index)].selected = selected;
  refresh();
}

std::string ListBox::Text() const {
  const int index = ListIndex();
  if (index >= 0 && Selected(index)) return List(index);
  if (std::ranges::count(rows_.flags, true, &Flags::selected) != 1) return {};
  return List(static_cast<int>(std::ranges::find(rows_.flags, true, &Flags::selected) -
                               rows_.flags.begin()));
}

const std::vector<std::string>& ListBox::entries() const {
  settle();
  return rows_.entries;
}

bool ListBox::Rows::isBefore(std::size_t row, const Rows& others, std::size_t other) const {
  if (fronts[row] != others.fronts[other]) return fronts[row] < others.fronts[other];
  const std::string_view one = entries[row];
  const std::string_view two = others.entries[other];
  const auto byteOf = [](char character) { return static_cast<unsigned char>(upper(character)); };
  // Most have the same beginning to the letter, so only where they differ is case looked at.
  auto here = std::ranges::mismatch(one, two);
  while (here.in1 != one.end() && here.in2 != two.end() && byteOf(*here.in1) == byteOf(*here.in2)) {
    here = std::ranges::mismatch(here.in1 + 1, one.end(), here.in2 + 1, two.end());
  }
  if (here.in2 == two.end()) return false;
  return here.in1 == one.end() || byteOf(*here.in1) < byteOf(*here.in2);
}

void ListBox::Rows::take(Rows& from, std::size_t row) {
  entries.push_back(std::move(from.entries[row]));
  fronts.push_back(from.fronts[row]);
  flags.push_back(from.flags[row]);
}

void ListBox::Rows::reserve(std::size_t count) {
  entries.reserve(count);
  fronts.reserve(count);
  flags.reserve(count);
}

void ListBox::Rows::replaceFrom(std::size_t first, Rows& from) {
  const auto at = static_cast<std::ptrdiff_t>(first);
  std::ranges::move(from.entries, entries.begin() + at);
  std::ranges::copy(from.fronts, fronts.begin() + at);
  std::ranges::copy(from.flags, flags.begin() + at);
}

void ListBox::sortTail() const {
  const std::size_t first = runs_.empty() ? 0 : runs_.back();
  if (first == rows_.size()) return;
  std::vector<std::size_t> order(rows_.size() - first);
  std::iota(order.begin(), order.end(), first);
  std::ranges::stable_sort(
      order, [this](std::size_t a, std::size_t b) { return rows_.isBefore(a, rows_, b); });
  Rows inOrder;
  inOrder.reserve(order.size());
  for (const std::size_t row : order) inOrder.take(rows_, row);
  rows_.replaceFrom(first, inOrder);
  runs_.push_back(rows_.size());
}

void ListBox::mergeLastRuns() const {
  const std::size_t end = runs_.back();
  runs_.pop_back();
  std::size_t right = runs_.back();
  runs_.pop_back();
  const std::size_t first = runs_.empty() ? 0 : runs_.back();
  Rows merged;
  merged.reserve(end - first);
  for (std::size_t left = first, middle = right; left < middle || right < end;) {
    const bool takesRight = left == middle || (right < end && rows_.isBefore(right, rows_, left));
    merged.take(rows_, takesRight ? right++ : left++);
  }
  rows_.replaceFrom(first, merged);
  runs_.push_back(end);
}

void ListBox::settle() const {
  if (!sorted) return;
  sortTail();
  while (runs_.size() > 1) mergeLastRuns();
}

}  // namespace kelvaron
