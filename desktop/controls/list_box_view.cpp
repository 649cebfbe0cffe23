#include "desktop/controls/list_box_view.h"

#include <QItemSelectionModel>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "base/scope_exit.h"
#include "desktop/controls/entry_list.h"
#include "desktop/controls/entry_painter.h"
#include "desktop/qt_values.h"

namespace kelvaron {

ListBoxView::ListBoxView(ListBox& box, ViewHost& host, QWidget* parent)
    : ControlView(box, host, new EntryList(parent)), list_(static_cast<EntryList&>(widget())) {
  list_.view = this;
  list_.setModel(&model_);
  list_.setItemDelegate(new EntryPainter(box.identity, &list_));
  list_.setAcceptDrops(static_cast<bool>(box.FileDropped));
  list_.setSelectionMode(box.selection == ListBox::Selection::several
                             ? QAbstractItemView::ExtendedSelection
                             : QAbstractItemView::SingleSelection);
  connect(list_.selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this](const QItemSelection& selected, const QItemSelection& deselected) {
            selectionChanged(selected, deselected);
          });
  connect(list_.selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { currentChanged(current); });
}

std::chrono::milliseconds ListBoxView::refreshDelay() const {
  // A short list is shown in the next turn, however often it changes.
  constexpr int kFew = 5'000;
  if (model_.rowCount() < kFew) return {};
  return std::chrono::ceil<std::chrono::milliseconds>(nextRefresh_ -
                                                      std::chrono::steady_clock::now());
}

void ListBoxView::prepareRefresh() { static_cast<void>(box().entries()); }

void ListBoxView::refresh() {
  constexpr int kShareOfTime = 10;
  constexpr std::chrono::milliseconds kBetween(100);
  const auto begun = std::chrono::steady_clock::now();
  const ScopeExit shown([&] {
    const auto end = std::chrono::steady_clock::now();
    nextRefresh_ =
        begun + std::max<std::chrono::nanoseconds>(kBetween, (end - begun) * kShareOfTime);
  });
  QPalette palette;
  if (const auto& color = box().ForeColor.get()) palette.setColor(QPalette::Text, toQt(*color));
  if (const auto& color = box().BackColor.get()) palette.setColor(QPalette::Base, toQt(*color));
  list_.setPalette(palette);

  const int scrolled = list_.verticalScrollBar()->value();
  const int currentBefore = list_.currentIndex().row();
  const bool rebuilt = model_.take(box().entries());
  if (rebuilt) {
    list_.layOut();
    const int count = box().ListCount();
    const QString told =
        count == 1 ? QStringLiteral("1 entry") : QStringLiteral("%1 entries").arg(count);
    list_.setToolTip(told);
    if (const std::string& one = box().CountedAs; !one.empty()) {
      list_.setHead(
          QStringLiteral("%1 %2").arg(count).arg(shownText(count == 1 ? one : one + "s")));
    }
    list_.setAccessibleDescription(told);
  }
  showSelection();
  const bool moved = !rebuilt && list_.currentIndex().row() != currentBefore;
  if (!moved) list_.verticalScrollBar()->setValue(scrolled);
}

void ListBoxView::showSelection() {
  QItemSelection selection;
  const int count = box().ListCount();
  for (int first = 0; first < count; ++first) {
    if (!box().Selected(first)) continue;
    int last = first;
    while (last + 1 < count && box().Selected(last + 1)) ++last;
    selection.select(model_.index(first), model_.index(last));
    first = last;
  }
  list_.selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
  list_.selectionModel()->setCurrentIndex(model_.index(box().ListIndex()),
                                          QItemSelectionModel::NoUpdate);
}

void ListBoxView::selectionChanged(const QItemSelection& selected,
                                   const QItemSelection& deselected) {
  if (showing() || !attached()) return;
  userSelected_ = true;
  // The control's own answer to this need not be shown.
  const auto onRefresh = std::exchange(box().onRefresh, nullptr);
  mark(deselected, false);
  mark(selected, true);
  // A screen reader selects without moving the focus: the current entry follows.
  const int current = box().ListIndex();
  if (current < 0 || !box().Selected(current)) {
    // One that was unselected is no target, while another one is selected.
    const QModelIndexList rows = list_.selectionModel()->selectedRows();
    if (!rows.isEmpty()) box().setListIndex(rows.first().row());
  }
  box().onRefresh = onRefresh;
}

void ListBoxView::currentChanged(const QModelIndex& current) {
  if (showing() || !attached() || !current.isValid()) return;
  userSelected_ = true;
  const auto onRefresh = std::exchange(box().onRefresh, nullptr);
  box().setListIndex(current.row());
  box().onRefresh = onRefresh;
}

void ListBoxView::mark(const QItemSelection& rows, bool selected) {
  for (const QItemSelectionRange& range : rows) {
    for (int row = range.top(); row <= range.bottom() && row < box().ListCount(); ++row) {
      box().setSelected(row, selected);
    }
  }
}

void ListBoxView::keyHandled() {
  if (std::exchange(userSelected_, false)) run([this] { box().Click(); });
}

void ListBoxView::showOnly(const std::function<void()>& change) {
  const Showing showing(*this);
  change();
}

void ListBoxView::leftReleased() {
  keyHandled();
  run([this] { box().MouseUp(MouseButton::left); });
}

void ListBoxView::rightReleased() {
  run([this] { box().MouseUp(MouseButton::right); });
}

/// The one it was dropped on is the only one selected then, as after a click.
void ListBoxView::fileDropped(int row, const QString& path) {
  if (const QString why = whyNot(path); !why.isEmpty()) return host().tell(why);
  run([&] {
    for (int i = 0; i < box().ListCount(); ++i) box().setSelected(i, i == row);
    box().setListIndex(row);
    box().FileDropped(storedText(path));
  });
}

void ListBoxView::doubleClicked() {
  run([this] { box().DblClick(); });
}

void ListBoxView::menuKeyPressed(QPoint global) {
  host().setPopUpPoint(global);
  rightReleased();
}

bool ListBoxView::enterPressed(Qt::KeyboardModifiers /*modifiers*/) {
  if (host().press(PressedBy::enter)) return true;
  doubleClicked();
  return true;
}

}  // namespace kelvaron
