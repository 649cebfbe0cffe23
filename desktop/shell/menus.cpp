#include "desktop/shell/menus.h"

#include <QMenu>
#include <algorithm>

#include "desktop/qt_values.h"

namespace kelvaron {

Menus::Menus(Form& form, EventGate& gate, QWidget& window) : gate_(gate) {
  const auto& items = form.Menus();
  if (items.empty()) return;
  bar_ = new QMenuBar(&window);
  for (MenuItem* item : items) add(*item, *bar_);
  bar_->setVisible(
      std::ranges::any_of(items, [](const MenuItem* item) { return item->Visible.get(); }));
}

void Menus::detach() {
  for (const Shown& shown : shown_) {
    shown.item->onRefresh = nullptr;
    shown.action->disconnect();
  }
  shown_.clear();
}

void Menus::add(MenuItem& item, QWidget& into) {
  Shown shown{&item, nullptr};
  if (item.items().empty()) {
    shown.action = new QAction(&into);
    shown.action->setSeparator(item.isSeparator());
    QObject::connect(shown.action, &QAction::triggered, bar_,
                     [this, &item] { gate_.run([&item] { item.Click(); }); });
  } else {
    auto* menu = new QMenu(&into);
    shown.action = menu->menuAction();
    for (MenuItem* child : item.items()) add(*child, *menu);
  }
  into.addAction(shown.action);
  item.onRefresh = [shown] { refresh(shown); };
  refresh(shown);
  shown_.push_back(shown);
}

void Menus::refresh(const Shown& shown) {
  if (!shown.item->isSeparator()) shown.action->setText(shownText(shown.item->Caption.get()));
  shown.action->setVisible(shown.item->Visible);
  shown.action->setEnabled(shown.item->Enabled);
}

void Menus::popUp(const MenuItem& item, QPoint global) {
  const auto found = std::ranges::find(shown_, &item, &Shown::item);
  if (found == shown_.end()) return;
  if (QMenu* menu = found->action->menu()) menu->popup(global);
}

}  // namespace kelvaron
