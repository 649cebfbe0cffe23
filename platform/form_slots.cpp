#include "platform/form_slots.h"

#include <algorithm>

#include "base/scope_exit.h"

namespace kelvaron {

std::unique_ptr<Form>* FormSlots::slotOf(const Form& form) {
  const auto found =
      std::ranges::find_if(slots_, [&](const auto& slot) { return slot.second.get() == &form; });
  return found == slots_.end() ? nullptr : &found->second;
}

void FormSlots::unload(Form& form) {
  const bool underWay = std::ranges::find(unloading_, &form, &Unloading::form) != unloading_.end();
  if (slotOf(form) == nullptr || underWay) return;
  unloading_.push_back({&form, {}});
  std::vector<std::function<void()>> after;
  {
    const ScopeExit done([&] {
      after = std::move(unloading_.back().after);
      unloading_.pop_back();
    });
    takeOut(form);
  }
  for (const auto& next : after) next();
}

void FormSlots::takeOut(Form& form) {
  form.Form_Unload();
  form.Visible = false;
  std::unique_ptr<Form>* slot = slotOf(form);
  if (onUnloaded) onUnloaded(form);
  unloaded_.push_back(std::move(*slot));
}

std::vector<Form*> FormSlots::forms() const {
  std::vector<Form*> loaded;
  for (const auto& [type, form] : slots_) {
    if (form) loaded.push_back(form.get());
  }
  return loaded;
}

}  // namespace kelvaron
