// A list box on the screen.
#pragma once

#include <QItemSelection>
#include <QListView>

#include "desktop/controls/control_view.h"
#include "desktop/controls/entry_model.h"
#include "platform/list_box.h"

namespace kelvaron {

class EntryList;

/// However many entries change in a turn of the event loop, the list is shown anew once; one of
/// thousands ten times a second at most, and a tenth of the time at most; selection and scroll
/// position stay.
///
/// The left button and the keyboard select. The right button selects nothing: it raises `MouseUp`
/// alone, and so do the menu key and Shift+F10. Enter is a double click.
class ListBoxView : public ControlView {
 public:
  ListBoxView(ListBox& box, ViewHost& host, QWidget* parent);

  bool wantsLabel() const override { return true; }

  /// For the widget.
  void leftReleased();
  void rightReleased();
  void doubleClicked();
  void menuKeyPressed(QPoint global);
  void keyHandled();
  void fileDropped(int row, const QString& path);
  /// Runs what changes the widget without the user having chosen anything.
  void showOnly(const std::function<void()>& change);

 protected:
  void refresh() override;
  std::chrono::milliseconds refreshDelay() const override;
  void prepareRefresh() override;
  bool enterPressed(Qt::KeyboardModifiers modifiers) override;

 private:
  void showSelection();
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected);
  void currentChanged(const QModelIndex& current);
  void mark(const QItemSelection& rows, bool selected);
  ListBox& box() const { return static_cast<ListBox&>(*control()); }

  EntryList& list_;
  EntryModel model_;
  std::chrono::steady_clock::time_point nextRefresh_{};
  // The user selected something since `Click` was raised last.
  bool userSelected_ = false;
};

}  // namespace kelvaron
