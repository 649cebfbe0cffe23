// The window of a form, as a widget: a menu bar over the inside that the controls stand in.
#pragma once

#include <QWidget>
#include <chrono>
#include <functional>

class QMenuBar;
class QVBoxLayout;

namespace kelvaron {

class FormFrame : public QWidget {
 public:
  struct Kind {
    bool sizable = false;
    bool closable = true;
  };
  explicit FormFrame(Kind kind);

  bool sizable() const { return kind_.sizable; }
  /// The inside.
  QWidget& content() { return *content_; }
  void setMenuBar(QMenuBar* bar);

  /// Size of the inside. One that the screen has no room for scrolls where the window is not
  /// sizable; a sizable window stays within the screen.
  void setContentSize(QSize size);
  bool scrolls() const { return scrolls_; }
  /// Cuts what scrolls at this height of the inside; what it loses stands below it, always in
  /// sight, with `air` pixels above.
  QWidget& splitOff(int top, int air);
  /// What the screen leaves for a window's inside.
  QSize room() const;
  /// The smallest inside that the user can give a sizable window; less where the screen has no
  /// room.
  void setSmallestContent(QSize size);
  /// To this place, or as near to it as leaves the window on the screen whole.
  void moveOnScreen(QPoint place);
  /// Before the first show: in the middle of `anchor`, or of the screen where that is null.
  void centerOn(const QWidget* anchor);

  /// When it came on the screen.
  std::chrono::steady_clock::time_point appearance() const { return appearance_; }

  /// What happens to the window.
  struct Events {
    std::function<void()> close;
    /// The inside took another size; sizable windows only.
    std::function<void(QSize)> contentResized;
    std::function<void(QPoint)> moved;
    /// The whole window, frame and all, has this height now.
    std::function<void(int height)> framed;
    /// Enter, Escape and F6 that no control took.
    std::function<void(int key)> key;
  };
  Events on;

 protected:
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void tellFrame();
  /// Of the whole window; before it was on the screen, what its frame may take.
  QSize expectedSize() const;
  int barHeight(int width) const;
  void scrollContent();

  Kind kind_;
  QVBoxLayout* layout_;
  QWidget* content_;
  QMenuBar* bar_ = nullptr;
  bool scrolls_ = false;
  std::chrono::steady_clock::time_point appearance_;
};

}  // namespace kelvaron
