// A form on the screen: any form of the system, window, menus, controls and timers.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktop/shell/form_frame.h"
#include "desktop/shell/form_views.h"
#include "desktop/shell/menus.h"
#include "desktop/shell/pointer_watch.h"
#include "desktop/shell/room_header.h"
#include "desktop/shell/timer_view.h"
#include "platform/form.h"

namespace kelvaron {

/// What all shown forms work with; outlives them.
struct ShellServices {
  EventGate& gate;
  /// The user closes a window by its frame.
  std::function<void(Form&)> close;
  std::function<void(const std::string& text)> tell;
};

/// The window is made when the form becomes visible for the first time; a form that stays hidden
/// costs its timers. Changes of the form's properties show in the next turn of the event loop.
class ShownForm final : public FormWindow, private ViewHost {
 public:
  ShownForm(Form& form, const ShellServices& services);
  ~ShownForm() override;

  /// Takes the window off the screen and lets go of the form, which is about to be destroyed.
  void detach();

  void activate() override;
  void comeQuietly() override;
  void popUp(MenuItem& menu) override;

  /// Null while there is no window.
  FormFrame* frame() const { return frame_.get(); }
  /// The view of a control, null while there is none.
  ControlView* viewOf(const Control& control) const {
    return views_ == nullptr ? nullptr : views_->of(control);
  }

 private:
  EventGate& gate() override { return services_.gate; }
  qreal scale() const override { return scale_; }
  bool press(PressedBy key) override { return views_->press(key); }
  void typeAhead(const QString& text) override { views_->typeAhead(text); }
  void setPopUpPoint(QPoint global) override { popUpPoint_ = global; }
  void tell(const QString& text) override;

  void leave();
  void changed();
  void later();
  void apply();
  void build();
  void fitScreen();
  void watchPointer();
  void showFirst();
  void applyLook();
  void applyPlace();
  void applyFocus();
  QSize contentSize() const;
  void resized(QSize content);
  void raiseResize();

  Form* form_;
  const ShellServices& services_;
  QObject turn_;
  bool waits_ = false;
  bool activateWish_ = false;
  bool quietWish_ = false;
  bool userAsked_ = false;
  const Control* focusWish_ = nullptr;
  std::optional<QPoint> popUpPoint_;
  // What the window last had, in twips: a property that differs was set by code.
  QPoint place_;
  QSize size_;
  bool wasShown_ = false;
  qreal scale_ = 1;

  std::vector<std::unique_ptr<TimerView>> timers_;
  std::unique_ptr<FormFrame> frame_;
  std::unique_ptr<Menus> menus_;
  std::unique_ptr<FormViews> views_;
  // The room's alone.
  std::unique_ptr<RoomHeader> header_;
  std::unique_ptr<PointerWatch> pointer_;
};

}  // namespace kelvaron
