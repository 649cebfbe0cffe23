#include "desktop/shell/shell.h"

#include <QCoreApplication>
#include <QEvent>
#include <cstdint>

#include "session/client.h"

namespace kelvaron {

/// Counts the keys that reach any window.
class Shell::KeyCount : public QObject {
 public:
  KeyCount() { QCoreApplication::instance()->installEventFilter(this); }
  std::uint64_t keys() const { return keys_; }

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::InputMethod) ++keys_;
    return false;
  }

 private:
  std::uint64_t keys_ = 0;
};

Shell::Shell(Client& client, EventGate& gate)
    : client_(client),
      gate_(gate),
      services_{gate,
                [this](Form& form) {
                  if (form.HidesOnClose) {
                    form.Visible = false;
                  } else {
                    client_.slots.unload(form);
                  }
                },
                [this](const std::string& text) { client_.MsgBox(text, box_style::kExclamation); }},
      keys_(std::make_unique<KeyCount>()) {
  client_.keysTyped = [this] { return keys_->keys(); };
  client_.slots.onLoaded = [this](Form& form) { loaded(form); };
  client_.slots.onUnloaded = [this](const Form& form) { unloaded(form); };
  client_.edge.onEnd = [this] { end(); };
  gate_.onQuiet = [this] {
    if (!unloaded_.empty()) destroyUnloaded();
  };
  for (Form* form : client_.slots.forms()) loaded(*form);
}

Shell::~Shell() {
  client_.keysTyped = [] { return std::uint64_t{0}; };
  client_.slots.onLoaded = nullptr;
  client_.slots.onUnloaded = nullptr;
  client_.edge.onEnd = nullptr;
  gate_.onQuiet = nullptr;
}

ShownForm* Shell::shown(const Form& form) const {
  const auto found = shown_.find(&form);
  return found == shown_.end() ? nullptr : found->second.get();
}

void Shell::loaded(Form& form) { shown_[&form] = std::make_unique<ShownForm>(form, services_); }

void Shell::unloaded(const Form& form) {
  const auto found = shown_.find(&form);
  if (found == shown_.end()) return;
  found->second->detach();
  unloaded_.push_back(std::move(found->second));
  shown_.erase(found);
  if (gate_.quiet()) destroyUnloaded();
}

void Shell::destroyUnloaded() {
  // The widget that raised the last event may be further up the stack: not before the next turn.
  QMetaObject::invokeMethod(
      &turn_,
      [this] {
        if (gate_.quiet()) unloaded_.clear();
      },
      Qt::QueuedConnection);
}

void Shell::end() {
  for (const auto& [form, shown] : shown_) {
    if (shown->frame() != nullptr) shown->frame()->hide();
  }
  QCoreApplication::exit(0);
}

}  // namespace kelvaron
