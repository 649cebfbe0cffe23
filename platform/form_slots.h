// One slot per kind of form: made at the first touch, unloaded safely from its own handler.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <typeindex>
#include <utility>
#include <vector>

#include "platform/form.h"

namespace kelvaron {

class FormSlots {
 public:
  /// The form of kind `F`, made with design values (and `Form_Load` run) if none is loaded.
  template <class F, class Context>
  F& touch(Context& context) {
    std::unique_ptr<Form>& slot = slots_[typeid(F)];
    if (!slot) {
      auto made = std::make_unique<F>(context);
      F& form = *made;
      slot = std::move(made);
      for (const auto& hook : onMade_[typeid(F)]) hook(form);
      if (onLoaded) onLoaded(form);
      form.Form_Load();
      return form;
    }
    return static_cast<F&>(*slot);
  }

  /// The form of kind `F`, or null while none is loaded. Loads nothing.
  template <class F>
  F* loaded() const {
    const auto slot = slots_.find(typeid(F));
    return slot == slots_.end() ? nullptr : static_cast<F*>(slot->second.get());
  }

  /// Runs `Form_Unload`, hides the form and empties its slot: the next touch makes a new one. The
  /// object itself stays until `collect`, so a handler of its own may unload it. A form that isn't
  /// in a slot (any more) is left alone.
  void unload(Form& form);
  /// From within the `Form_Unload` of a form: runs `next` once that form is out of its slot, so
  /// that a new one of its kind can be made.
  void afterUnload(std::function<void()> next) {
    unloading_.back().after.push_back(std::move(next));
  }

  /// Runs `hook` whenever a form of kind `F` was made, before it loads: folders above the form's
  /// own wire their handlers to its controls.
  template <class F>
  void onMade(std::function<void(F&)> hook) {
    onMade_[typeid(F)].push_back(
        [hook = std::move(hook)](Form& form) { hook(static_cast<F&>(form)); });
  }

  /// Destroys what was unloaded. Call it when no handler is running.
  void collect() { unloaded_.clear(); }

  /// All that are loaded, hidden ones too.
  std::vector<Form*> forms() const;

  /// For the shell: a form was made; a form was taken out of its slot.
  std::function<void(Form&)> onLoaded;
  std::function<void(Form&)> onUnloaded;

 private:
  struct Unloading {
    const Form* form;
    std::vector<std::function<void()>> after;
  };

  std::unique_ptr<Form>* slotOf(const Form& form);
  void takeOut(Form& form);

  std::map<std::type_index, std::unique_ptr<Form>> slots_;
  std::map<std::type_index, std::vector<std::function<void(Form&)>>> onMade_;
  std::vector<std::unique_ptr<Form>> unloaded_;
  std::vector<Unloading> unloading_;
};

}  // namespace kelvaron
