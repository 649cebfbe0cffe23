#include "platform/form_slots.h"

#include <algorithm>

namespace kelvaron {

std::unique_ptr<Form>* FormSlots::slotOf(const Form& form) {
  const auto found =
      std::ranges::find_if(slots_, [&](const auto& slot) { return slot.second.get() == &form; });
  return found == slots_.end() ? nullptr : &found->second;
}

void FormSlots::unload(Form& form) {
  if (slotOf(form) == nullptr || std::ranges::find(unloading_, &form) != unloading_.end()) return;
  unloading_.push_back(&form);
  struct Done {
    std::vector<const Form*>& unloading;
    ~Done() { unloading.pop_back(); }
  } const done{unloading_};

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
