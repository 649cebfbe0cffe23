// A form's menu entries on the screen: the menu bar and the menus that pop up.
#pragma once

#include <QMenuBar>
#include <vector>

#include "base/non_copyable.h"
#include "desktop/event_gate.h"
#include "platform/menu.h"

namespace kelvaron {

class Menus : NonCopyable {
 public:
  /// The widgets belong to `window`. Changes of the entries show at once.
  Menus(Form& form, EventGate& gate, QWidget& window);
  ~Menus() { detach(); }

  /// Lets go of the entries, which are about to be destroyed.
  void detach();

  /// Null when the form has no entry for a bar to show.
  QMenuBar* bar() const { return bar_; }
  /// Opens the submenu of an entry and returns. Entries without one are left alone.
  void popUp(const MenuItem& item, QPoint global);

 private:
  struct Shown {
    MenuItem* item;
    QAction* action;
    QWidget* menu;
  };

  void add(MenuItem& item, QWidget& into);
  static void refresh(const Shown& shown);

  EventGate& gate_;
  QMenuBar* bar_ = nullptr;
  std::vector<Shown> shown_;
};

}  // namespace kelvaron
