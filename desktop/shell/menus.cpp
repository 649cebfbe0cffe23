#include "desktop/shell/menus.h"

#include <QMenu>
#include <algorithm>

#include "desktop/qt_values.h"

namespace kelvaron {

namespace {

/// The caption with the first letter, of a word if possible, that no sibling has for its key.
QString withLetter(const QString& caption, const QAction& action, const QWidget& menu) {
  QString taken;
  for (const QAction* other : menu.actions()) {
    const auto mark = other->text().indexOf('&');
    if (other != &action && mark >= 0) taken += other->text().at(mark + 1);
  }
  for (const bool beginsWord : {true, false}) {
    for (qsizetype at = 0; at < caption.size(); ++at) {
      if (beginsWord && at > 0 && caption[at - 1] != ' ') continue;
      if (!caption[at].isLetter() || taken.contains(caption[at], Qt::CaseInsensitive)) continue;
      return QString(caption).insert(at, '&');
    }
  }
  return caption;
}

}  // namespace

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
  Shown shown{&item, nullptr, &into};
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
  if (!shown.item->isSeparator()) {
    const QString caption = shownText(shown.item->Caption.get());
    shown.action->setText(withLetter(caption, *shown.action, *shown.menu));
  }
  shown.action->setVisible(shown.item->Visible);
  shown.action->setEnabled(shown.item->Enabled);
}

void Menus::popUp(const MenuItem& item, QPoint global) {
  const auto found = std::ranges::find(shown_, &item, &Shown::item);
  if (found == shown_.end()) return;
  if (QMenu* menu = found->action->menu()) menu->popup(global);
}

}  // namespace kelvaron
