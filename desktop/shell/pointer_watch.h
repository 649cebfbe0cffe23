// The pointer over a form's inside: where it moves, and clicks.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

class QMouseEvent;
class QWidget;

namespace kelvaron {

/// Widgets are told as the deepest one in the surface, or as the surface where it is bare.
class PointerWatch : public QObject {
 public:
  /// Watches `surface`, which outlives the watch, and all widgets that stand in it now.
  explicit PointerWatch(QWidget& surface);

  /// The pointer moved. Told once a turn of the event loop at most, for where it was last.
  std::function<void(const QWidget& over)> onMoved;
  /// The left button was pressed and released over the same widget, which didn't want either.
  std::function<void(const QWidget& at)> onClicked;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  const QWidget* under(const QMouseEvent& event) const;
  void moved(const QWidget* over);

  QWidget& surface_;
  QPointer<const QWidget> over_;
  QPointer<const QWidget> pressed_;
  bool waits_ = false;
};

}  // namespace kelvaron
