// What shows a control: the part that the views of all kinds share.
#pragma once

#include <QFont>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QSize>
#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "base/non_copyable.h"
#include "desktop/event_gate.h"
#include "desktop/form_scale.h"
#include "platform/controls.h"

namespace kelvaron {

/// Keys that press a button from anywhere on its form.
enum class PressedBy { enter, escape };

/// What a control's view asks of the window that it stands in.
class ViewHost : NonCopyable {
 public:
  virtual ~ViewHost() = default;

  virtual EventGate& gate() = 0;
  /// The form's factor between the units of its design and pixels.
  virtual qreal scale() const = 0;
  /// Presses the form's button for this key. False when it has none that can be pressed.
  virtual bool press(PressedBy key) = 0;
  /// What the user typed where nothing can be typed: goes to the form's input line.
  virtual void typeAhead(const QString& text) = 0;
  /// Where the next pop-up menu opens, in place of the pointer.
  virtual void setPopUpPoint(QPoint global) = 0;
  /// A sentence to the user, in a box, once the toolkit is back in its event loop.
  virtual void tell(const QString& text) = 0;
};

/// Shows one control on one widget. Changes of the control's properties reach the widget once a
/// turn of the event loop, or at once where a view says so; its place follows at once.
class ControlView : public QObject {
 public:
  ControlView(Control& control, ViewHost& host, QWidget* widget);
  ~ControlView() override;

  QWidget& widget() const { return *widget_; }
  Control* control() const { return control_; }
  bool attached() const { return control_ != nullptr; }

  /// Hooks up and shows the control. Called once, by whoever made the view.
  void attach();
  /// Puts the widget into another one, whose upper left corner is at `origin` of the form.
  void moveInto(QWidget& parent, QPoint origin);
  /// Gives the widget this place and its caption this font, whatever the control's own are.
  void layOut(QRect place, const QFont& font);
  /// Lets go of the control, which is about to be destroyed. The widget stays but does nothing.
  virtual void detach();
  /// Shows now what waits for the next turn.
  void settle();

  /// Whether the label in front names this control: the keyboard goes there, and it has no caption
  /// of its own.
  virtual bool wantsLabel() const { return false; }
  virtual void setNameFromLabel(const QString& name);
  /// Where the keyboard begins when the form comes up: in the first usual place, else in the first
  /// where there is only something to read.
  enum class FirstFocus { never, toRead, usual };
  virtual FirstFocus firstFocus() const {
    return wantsLabel() ? FirstFocus::usual : FirstFocus::never;
  }
  /// Whether the user can see and use the widget.
  bool usable() const { return widget_->isVisible() && widget_->isEnabled(); }

  /// Names the control behind this one. Only labels do.
  virtual void nameNext(ControlView& /*next*/) {}
  /// Types at the end of the text. False where nothing can be typed.
  virtual bool type(const QString& /*text*/) { return false; }
  virtual bool isButton() const { return false; }
  /// Presses a button whose key this is. False where that can't be.
  virtual bool press(PressedBy /*key*/) { return false; }
  /// The pointer moved over the widget. False where the form hears of it.
  virtual bool pointerMoved() { return false; }
  /// Whether a click here is one on the form's bare surface.
  virtual bool isBare() const { return false; }

 protected:
  /// Reads the control's own properties (`Visible`, `Enabled` and the place are done here).
  virtual void refresh() = 0;
  virtual bool refreshesAtOnce() const { return false; }
  /// How long a change waits until it is shown; with others that come meanwhile.
  virtual std::chrono::milliseconds refreshDelay() const { return {}; }
  /// What can be done for `refresh` in a turn of its own.
  virtual void prepareRefresh() {}
  /// The Enter key. Returns whether it was used up.
  virtual bool enterPressed(Qt::KeyboardModifiers modifiers);

  bool eventFilter(QObject* watched, QEvent* event) override;

  ViewHost& host() const { return host_; }

  /// A font for a caption that has to stand in the control: the one it was laid out with, else
  /// smaller where a window that can be resized is smaller than designed, down to what it is on a
  /// desktop with small text.
  QFont captionFont(QFont font) const;
  /// `font`, or as much smaller as it takes to fit, down to the smallest that can be read.
  QFont fittingFont(QFont font, const std::function<bool(const QFont&)>& fits) const;
  /// The font of the form's texts.
  QFont formFont() const { return widget_->window()->font(); }

  /// Runs a handler of the control; returns whether the control is still there.
  template <class Handler>
  bool run(Handler&& handler) {
    if (!attached()) return false;
    host_.gate().run(std::forward<Handler>(handler));
    return attached();
  }

  /// True while the view itself changes the widget: signals that this raises are no user's doing.
  class Showing : NonCopyable {
   public:
    explicit Showing(ControlView& view) : view_(view) { ++view_.showing_; }
    ~Showing() { --view_.showing_; }

   private:
    ControlView& view_;
  };
  bool showing() const { return showing_ > 0; }

 private:
  void changed();
  void refreshAll();
  void refreshPlace();

  Control* control_;
  ViewHost& host_;
  QPointer<QWidget> widget_;
  const QSize designed_;
  QPoint origin_;
  struct Layout {
    QRect place;
    QFont font;
  };
  std::optional<Layout> layout_;
  bool waits_ = false;
  int showing_ = 0;
};

/// The view of a control that is seen; null for a timer.
std::unique_ptr<ControlView> makeView(Control& control, ViewHost& host, QWidget* parent);

}  // namespace kelvaron
