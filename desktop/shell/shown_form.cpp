#include "desktop/shell/shown_form.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QWindow>
#include <algorithm>
#include <map>

#include "desktop/chat_view/chat_view.h"
#include "desktop/controls/button_view.h"
#include "desktop/controls/label_view.h"
#include "desktop/qt_values.h"
#include "desktop/shell/frames.h"

namespace kelvaron {
namespace {

// Characters of a window's caption.
constexpr std::size_t kMostOfCaption = 256;
// Of its design's size: the smallest that a window can be made.
constexpr qreal kSmallestShare = 0.4;

Qt::CursorShape shape(MousePointer pointer) {
  switch (pointer) {
    case MousePointer::hourglass:
      return Qt::WaitCursor;
    case MousePointer::noDrop:
      return Qt::ForbiddenCursor;
    case MousePointer::standard:
      break;
  }
  return Qt::ArrowCursor;
}

}  // namespace

ShownForm::ShownForm(Form& form, const ShellServices& services)
    : form_(&form), services_(services), size_(form.ScaleWidth, form.ScaleHeight) {
  form.window = this;
  form.onRefresh = [this] { changed(); };
  for (Control* control : form.Controls()) {
    control->onSetFocus = [this, control] {
      focusWish_ = control;
      later();
    };
    if (control->kind == ControlKind::timer) {
      timers_.push_back(std::make_unique<TimerView>(static_cast<Timer&>(*control), services_.gate));
    }
  }
  if (form.Visible) changed();
}

ShownForm::~ShownForm() { detach(); }

void ShownForm::detach() {
  if (form_ == nullptr) return;
  form_->window = nullptr;
  form_->onRefresh = nullptr;
  for (Control* control : form_->Controls()) control->onSetFocus = nullptr;
  form_ = nullptr;
  for (const auto& timer : timers_) timer->detach();
  if (!frame_) return;
  frame_->onClose = nullptr;
  frame_->onContentResized = nullptr;
  frame_->onMoved = nullptr;
  frame_->onFramed = nullptr;
  frame_->onKey = nullptr;
  pointer_->onMoved = nullptr;
  pointer_->onClicked = nullptr;
  for (QMenu* menu : frame_->findChildren<QMenu*>()) menu->close();
  putAway(*frame_);
  if (menus_) menus_->detach();
  for (const auto& view : views_) view->detach();
}

ControlView* ShownForm::viewOf(const Control& control) const {
  const auto found = std::ranges::find(views_, &control, &ControlView::control);
  return found == views_.end() ? nullptr : found->get();
}

void ShownForm::activate() {
  activateWish_ = true;
  changed();
}

void ShownForm::comeQuietly() {
  quietWish_ = true;
  later();
}

void ShownForm::popUp(MenuItem& menu) {
  if (!menus_) return;
  menus_->popUp(menu, popUpPoint_.value_or(QCursor::pos()));
  popUpPoint_.reset();
}

void ShownForm::typeAhead(const QString& text) {
  for (const auto& view : views_) {
    if (!view->attached() || !view->widget().isVisible() || !view->widget().isEnabled()) continue;
    const ControlKind kind = view->control()->kind;
    if (kind != ControlKind::textBox && kind != ControlKind::richTextLine) continue;
    if (static_cast<const TextBox*>(view->control())->Locked) continue;
    view->type(text);
    return;
  }
}

void ShownForm::tell(const QString& text) {
  QMetaObject::invokeMethod(
      &turn_,
      [this, text = storedText(text)] { services_.gate.run([&] { services_.tell(text); }); },
      Qt::QueuedConnection);
}

ChatView* ShownForm::chat() const {
  for (const auto& view : views_) {
    if (view->attached() && view->control()->kind == ControlKind::richTextBox) {
      return static_cast<ChatView*>(&view->widget());
    }
  }
  return nullptr;
}

void ShownForm::wantAttention() {
  if (frame_ && QApplication::applicationState() != Qt::ApplicationActive) {
    QApplication::alert(frame_.get());
  }
}

/// Escape in a window without a cancel button closes it as its frame does, unless it is the room.
void ShownForm::leave() {
  if (form_ == nullptr || !form_->ControlBox || form_->Sizable) return;
  services_.gate.run([this] { services_.close(*form_); });
}

bool ShownForm::press(bool CommandButton::*role) {
  for (const auto& view : views_) {
    if (!view->attached() || view->control()->kind != ControlKind::button) continue;
    if (!(static_cast<const CommandButton*>(view->control())->*role)) continue;
    view->settle();
    if (!view->widget().isVisible() || !view->widget().isEnabled()) continue;
    static_cast<ButtonView&>(*view).press();
    return true;
  }
  return false;
}

void ShownForm::changed() {
  userAsked_ = userAsked_ || services_.gate.userActs();
  later();
}

void ShownForm::later() {
  if (std::exchange(waits_, true)) return;
  QMetaObject::invokeMethod(
      &turn_, [this] { apply(); }, Qt::QueuedConnection);
}

void ShownForm::apply() {
  waits_ = false;
  if (form_ == nullptr || services_.gate.edge().ended()) return;
  if (form_->Visible && !frame_) build();
  const bool activates = std::exchange(activateWish_, false);
  const bool quiet = std::exchange(quietWish_, false);
  const bool asked = std::exchange(userAsked_, false);
  if (!frame_) return;

  applyLook();
  if (!form_->Visible) {
    putAway(*frame_);
    return;
  }
  if (!wasShown_) {
    showFirst();
    if (form_ == nullptr) return;  // its Form_Resize unloaded it
  }
  applyPlace();
  bringUp(activates, asked, quiet && !activates);
  applyFocus();
}

void ShownForm::bringUp(bool activates, bool asked, bool quiet) {
  const bool appears = !frame_->isVisible();
  const QWidget* atWork = QApplication::activeWindow();
  // What no user asked for leaves the keyboard where the user types. A window that is there already
  // doesn't even come to the front: a server could make it do so over and over.
  const bool onlyAsks = activates && !appears && !asked && atWork != frame_.get();
  const bool comesByItself = quiet || (!activates && !asked && atWork != nullptr);
  frame_->setAttribute(Qt::WA_ShowWithoutActivating, comesByItself);
  frame_->winId();
  // What the toolkit makes of the attribute when it makes a window, which may have been before.
  frame_->windowHandle()->setProperty("_q_showWithoutActivating", comesByItself);
  frame_->show();
  // An offer, a start, an answer: somebody wants something.
  if (appears && comesByItself) wantAttention();
  if (onlyAsks) {
    QApplication::alert(frame_.get());
    return;
  }
  if (appears || activates) frame_->raise();
  if (activates || (appears && !comesByItself)) {
    if (frame_->isMinimized()) frame_->showNormal();
    frame_->activateWindow();
  }
}

void ShownForm::build() {
  frame_ = std::make_unique<FormFrame>(
      FormFrame::Kind{.sizable = form_->Sizable, .closable = form_->ControlBox});
  frame_->onClose = [this] { services_.gate.run([this] { services_.close(*form_); }); };
  frame_->onMoved = [this](QPoint place) {
    place_ = {toTwips(place.x()), toTwips(place.y())};
    form_->Left.setQuietly(place_.x());
    form_->Top.setQuietly(place_.y());
  };
  frame_->onFramed = [this](int height) { form_->Height = toTwips(height); };
  frame_->onContentResized = [this](QSize content) { resized(content); };
  frame_->onKey = [this](int key) {
    if (key == Qt::Key_F6) {
      goToNextFrame(*frame_);
    } else if (key != Qt::Key_Escape) {
      pressDefault();
    } else if (!pressCancel()) {
      leave();
    }
  };

  menus_ = std::make_unique<Menus>(*form_, services_.gate, *frame_);
  if (menus_->bar() != nullptr) frame_->setMenuBar(menus_->bar());

  std::map<const Control*, QWidget*> frames;
  for (Control* control : form_->Controls()) {
    const Control* within = control->container.asControl();
    QWidget* parent = within == nullptr ? &frame_->content() : frames[within];
    std::unique_ptr<ControlView> view = makeView(*control, *this, parent);
    if (!view) continue;
    if (control->kind == ControlKind::frame) frames[control] = &view->widget();
    views_.push_back(std::move(view));
  }
  nameByLabels();
  watchPointer();
}

void ShownForm::watchPointer() {
  pointer_ = std::make_unique<PointerWatch>(frame_->content());
  pointer_->onMoved = [this](const QWidget& over) {
    const auto view =
        std::ranges::find_if(views_, [&](const auto& each) { return &each->widget() == &over; });
    const Image* image = nullptr;
    if (view != views_.end() && (*view)->control()->kind == ControlKind::image) {
      image = static_cast<const Image*>((*view)->control());
    }
    services_.gate.runUnattended([&] {
      if (image != nullptr && image->MouseMove) {
        image->MouseMove();
      } else {
        form_->Form_MouseMove();
      }
    });
  };
  pointer_->onClicked = [this](const QWidget& at) {
    const bool onLabel = std::ranges::any_of(views_, [&](const auto& view) {
      return &view->widget() == &at && view->control()->kind == ControlKind::label &&
             view->control()->container.asControl() == nullptr;
    });
    if (onLabel || &at == &frame_->content()) services_.gate.run([this] { form_->Form_Click(); });
  };
}

void ShownForm::nameByLabels() {
  for (std::size_t i = 0; i + 1 < views_.size(); ++i) {
    const bool leads = views_[i]->control()->kind == ControlKind::label;
    // What has a caption has a name of its own.
    const ControlKind next = views_[i + 1]->control()->kind;
    const bool captioned = next == ControlKind::button || next == ControlKind::checkBox;
    if (leads && !captioned && views_[i + 1]->takesKeyboard()) {
      static_cast<LabelView&>(*views_[i]).setBuddy(*views_[i + 1]);
    }
  }
}

void ShownForm::applyLook() {
  frame_->setWindowTitle(shownText(beginningOf(form_->Caption.get(), kMostOfCaption)));
  QPalette palette = QApplication::palette();
  palette.setColor(QPalette::Window, toQt(form_->BackColor.get()));
  for (const auto group : {QPalette::Active, QPalette::Inactive}) {
    palette.setColor(group, QPalette::WindowText, toQt(form_->ForeColor.get()));
  }
  QWidget& content = frame_->content();
  if (content.palette() != palette) content.setPalette(palette);
  content.setCursor(shape(form_->MousePointer_.get()));
}

QSize ShownForm::contentSize() const {
  return {toPixels(form_->ScaleWidth), toPixels(form_->ScaleHeight)};
}

void ShownForm::showFirst() {
  wasShown_ = true;
  size_ = {form_->ScaleWidth, form_->ScaleHeight};
  // The first size is the design's own, whatever the screen leaves of it afterwards.
  raiseResize();
  if (form_ == nullptr) return;
  if (form_->Sizable) frame_->setSmallestContent(contentSize() * kSmallestShare);
  frame_->setContentSize(contentSize());
  if (form_->Left == 0 && form_->Top == 0) frame_->centerOn(anchorFor(*frame_));
}

void ShownForm::applyPlace() {
  if (const QPoint place(form_->Left, form_->Top); place != place_) {
    place_ = place;
    frame_->moveOnScreen({toPixels(place.x()), toPixels(place.y())});
  }
  if (const QSize size(form_->ScaleWidth, form_->ScaleHeight); size != size_) {
    size_ = size;
    frame_->setContentSize(contentSize());
    if (!form_->Sizable) raiseResize();
  }
}

void ShownForm::applyFocus() {
  const Control* wish = std::exchange(focusWish_, nullptr);
  ControlView* first = wish == nullptr ? nullptr : viewOf(*wish);
  if (first == nullptr) {
    if (frame_->focusWidget() != nullptr) return;
    // The first that can be used; a text that is only read comes last.
    for (const auto& view : views_) {
      if (!view->takesKeyboard() || !view->widget().isVisible() || !view->widget().isEnabled()) {
        continue;
      }
      const bool button = view->control()->kind == ControlKind::button;
      if (button && static_cast<const CommandButton*>(view->control())->Deliberate) continue;
      const ControlKind kind = view->control()->kind;
      const bool onlyRead =
          kind == ControlKind::richTextBox ||
          (kind == ControlKind::textBox && static_cast<const TextBox*>(view->control())->Locked);
      if (first == nullptr || !onlyRead) first = view.get();
      if (!onlyRead) break;
    }
  }
  if (first != nullptr) {
    first->settle();
    first->widget().setFocus();
  } else {
    frame_->setFocus();
  }
}

void ShownForm::resized(QSize content) {
  if (!wasShown_ || content == contentSize()) return;
  size_ = {toTwips(content.width()), toTwips(content.height())};
  form_->ScaleWidth.setQuietly(size_.width());
  form_->ScaleHeight.setQuietly(size_.height());
  raiseResize();
}

void ShownForm::raiseResize() {
  services_.gate.runUnattended([this] { form_->Form_Resize(); });
}

}  // namespace kelvaron
