// The widget of a list box: a list view that tells its mouse and keys to the list box's view.
#pragma once

#include <QListView>

class QLabel;

namespace kelvaron {

class ListBoxView;

class EntryList : public QListView {
 public:
  explicit EntryList(QWidget* parent);

  ListBoxView* view = nullptr;

  /// Lays out at once what a change of the model has put off.
  void layOut() { executeDelayedItemsLayout(); }
  /// A line above the entries, where there is room for one; none for an empty text.
  void setHead(const QString& text);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void placeHead();

  QLabel* head_ = nullptr;
};

}  // namespace kelvaron
