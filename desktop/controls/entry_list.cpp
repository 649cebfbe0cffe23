#include "desktop/controls/entry_list.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QLabel>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>

#include "desktop/controls/list_box_view.h"

namespace kelvaron {
namespace {

// The rest follows in turns of its own.
constexpr int kMostLaidOutAtOnce = 50'000;

/// The one file of this machine that is dragged; empty for anything else.
QString draggedFile(const QDropEvent& event) {
  const QList<QUrl> urls = event.mimeData()->urls();
  return urls.size() == 1 ? QDir::toNativeSeparators(urls.front().toLocalFile()) : QString();
}

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

void EntryList::setHead(const QString& text) {
  if (head_ == nullptr) {
    if (text.isEmpty()) return;
    head_ = new QLabel(this);
    head_->setIndent(7);
    head_->setForegroundRole(QPalette::PlaceholderText);
    head_->setBackgroundRole(QPalette::Base);
    head_->setAutoFillBackground(true);
    head_->show();
  }
  head_->setText(text);
  placeHead();
}

void EntryList::placeHead() {
  if (head_ == nullptr) return;
  constexpr int kFewestRows = 5;
  const int row = head_->sizeHint().height() + 4;
  const bool room = !head_->text().isEmpty() && height() >= (kFewestRows + 1) * row;
  head_->setVisible(room);
  if (const QMargins margins(0, room ? row : 0, 0, 0); viewportMargins() != margins) {
    setViewportMargins(margins);
  }
  const QRect shown = viewport()->geometry();
  head_->setGeometry(shown.x(), shown.y() - row, shown.width(), row);
}

void EntryList::resizeEvent(QResizeEvent* event) {
  QListView::resizeEvent(event);
  placeHead();
}

void EntryList::dragEnterEvent(QDragEnterEvent* event) {
  if (!draggedFile(*event).isEmpty()) event->acceptProposedAction();
}

void EntryList::dragMoveEvent(QDragMoveEvent* event) {
  const bool onEntry = indexAt(event->position().toPoint()).isValid();
  event->setAccepted(onEntry && !draggedFile(*event).isEmpty());
}

void EntryList::dropEvent(QDropEvent* event) {
  view->settle();
  const QModelIndex entry = indexAt(event->position().toPoint());
  const QString file = draggedFile(*event);
  if (!entry.isValid() || file.isEmpty()) return;
  event->acceptProposedAction();
  view->fileDropped(entry.row(), file);
}

}  // namespace kelvaron
