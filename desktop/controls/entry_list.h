// The widget of a list box: a list view that tells its mouse and keys to the list box's view.
#pragma once

#include <QListView>

namespace kelvaron {

class ListBoxView;

class EntryList : public QListView {
 public:
  explicit EntryList(QWidget* parent);

  ListBoxView* view = nullptr;

  /// Lays out at once what a change of the model has put off.
  void layOut() { executeDelayedItemsLayout(); }

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
};

}  // namespace kelvaron
