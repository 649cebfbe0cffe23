// The desktop shell: shows the client's forms as they come and go.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "base/non_copyable.h"
#include "desktop/event_gate.h"
#include "desktop/shell/shown_form.h"

namespace kelvaron {

class Client;

class Shell : NonCopyable {
 public:
  /// `client` and `gate` outlive the shell. Hooks the client's slots and the end at the edge, which
  /// closes all windows and leaves every event loop of the application with exit code 0.
  Shell(Client& client, EventGate& gate);
  ~Shell();

  /// How a form is shown, null when it isn't loaded.
  ShownForm* shown(const Form& form) const;

 private:
  void loaded(Form& form);
  void unloaded(const Form& form);
  void destroyUnloaded();
  void end();

  Client& client_;
  EventGate& gate_;
  ShellServices services_;
  std::map<const Form*, std::unique_ptr<ShownForm>> shown_;
  // Of forms that were unloaded; their widgets may still be on the stack.
  std::vector<std::unique_ptr<ShownForm>> unloaded_;
  QObject turn_;
  class KeyCount;
  std::unique_ptr<KeyCount> keys_;
};

}  // namespace kelvaron
