#include "desktop/controls/entry_list.h"

#include <QContextMenuEvent>
#include <QMouseEvent>

#include "desktop/controls/list_box_view.h"

namespace kelvaron {
namespace {

// The rest follows in turns of its own.
constexpr int kMostLaidOutAtOnce = 50'000;

}  // namespace

EntryList::EntryList(QWidget* parent) : QListView(parent) {
  setUniformItemSizes(true);
  setLayoutMode(Batched);
  setBatchSize(kMostLaidOutAtOnce);
  setEditTriggers(NoEditTriggers);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void EntryList::mousePressEvent(QMouseEvent* event) {
  view->settle();
  // A press below the last entry leaves the selection alone.
  if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid()) {
    QListView::mousePressEvent(event);
  }
}

void EntryList::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    QListView::mouseReleaseEvent(event);
    view->leftReleased();
  } else if (event->button() == Qt::RightButton) {
    view->rightReleased();
  }
}

void EntryList::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  view->settle();
  if (indexAt(event->position().toPoint()).isValid()) QListView::mouseDoubleClickEvent(event);
  view->doubleClicked();
}

void EntryList::contextMenuEvent(QContextMenuEvent* event) {
  event->accept();
  // By mouse the release has told it.
  if (event->reason() != QContextMenuEvent::Keyboard) return;
  const QRect entry = visualRect(currentIndex());
  const QPoint point = entry.isValid() && viewport()->rect().contains(entry.bottomLeft())
                           ? entry.bottomLeft()
                           : viewport()->rect().topLeft();
  view->menuKeyPressed(viewport()->mapToGlobal(point));
}

void EntryList::keyPressEvent(QKeyEvent* event) {
  view->settle();
  QListView::keyPressEvent(event);
  view->keyHandled();
}

void EntryList::focusInEvent(QFocusEvent* event) {
  const bool none = !currentIndex().isValid();
  view->showOnly([&] {
    QListView::focusInEvent(event);
    // The toolkit makes the first entry the current one, but nobody chose it.
    if (none) selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
  });
}

}  // namespace kelvaron
