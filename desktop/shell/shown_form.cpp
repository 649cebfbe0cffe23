#include "desktop/shell/shown_form.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>

#include "desktop/qt_values.h"
#include "desktop/shell/frames.h"

namespace kelvaron {
namespace {

// Characters of a window's caption.
constexpr std::size_t kMostOfTitle = 256;
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
  frame_->on = {};
  pointer_->onMoved = nullptr;
  pointer_->onClicked = nullptr;
  for (QMenu* menu : frame_->findChildren<QMenu*>()) menu->close();
  hideFrame(*frame_);
  if (menus_) menus_->detach();
  views_->detach();
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

void ShownForm::tell(const QString& text) {
  QMetaObject::invokeMethod(
      &turn_,
      [this, text = storedText(text)] { services_.gate.run([&] { services_.tell(text); }); },
      Qt::QueuedConnection);
}

/// Escape in a window without a cancel button closes it as its frame does, unless it is the room.
void ShownForm::leave() {
  if (form_ == nullptr || !form_->ControlBox || form_->Sizable) return;
  services_.gate.run([this] { services_.close(*form_); });
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
    hideFrame(*frame_);
    return;
  }
  if (!wasShown_) {
    showFirst();
    if (form_ == nullptr) return;  // its Form_Resize unloaded it
  }
  applyPlace();
  bringUp(*frame_, {.activates = activates, .asked = asked, .quiet = quiet && !activates});
  applyFocus();
}

void ShownForm::build() {
  frame_ = std::make_unique<FormFrame>(
      FormFrame::Kind{.sizable = form_->Sizable, .closable = form_->ControlBox});
  frame_->on.close = [this] { services_.gate.run([this] { services_.close(*form_); }); };
  frame_->on.moved = [this](QPoint place) {
    place_ = {toTwips(place.x(), scale_), toTwips(place.y(), scale_)};
    form_->Left.setQuietly(place_.x());
    form_->Top.setQuietly(place_.y());
  };
  frame_->on.framed = [this](int height) { form_->Height = toTwips(height, scale_); };
  frame_->on.contentResized = [this](QSize content) { resized(content); };
  frame_->on.key = [this](int key) {
    if (key == Qt::Key_F6) {
      goToNextFrame(*frame_);
    } else if (key != Qt::Key_Escape) {
      press(PressedBy::enter);
    } else if (!press(PressedBy::escape)) {
      leave();
    }
  };

  menus_ = std::make_unique<Menus>(*form_, services_.gate, *frame_);
  if (menus_->bar() != nullptr) frame_->setMenuBar(menus_->bar());

  fitScreen();
  ViewHost& host = *this;
  views_ = std::make_unique<FormViews>(*form_, host, frame_->content());
  if (auto* room = dynamic_cast<frmMain*>(form_)) {
    header_ = std::make_unique<RoomHeader>(*room, *views_);
  }
  watchPointer();
}

/// A form that can't be made larger is as large as its screen has room for, its text with it.
void ShownForm::fitScreen() {
  scale_ = formScale();
  if (form_->Sizable) return;
  scale_ = formScaleWithin({form_->ScaleWidth, form_->ScaleHeight}, frame_->room());
  if (scale_ < formScale()) frame_->setFont(formFontFor(scale_));
}

void ShownForm::watchPointer() {
  pointer_ = std::make_unique<PointerWatch>(frame_->content());
  pointer_->onMoved = [this](const QWidget& over) {
    ControlView* view = views_->of(over);
    services_.gate.runUnattended([&] {
      if (view == nullptr || !view->pointerMoved()) form_->Form_MouseMove();
    });
  };
  pointer_->onClicked = [this](const QWidget& at) {
    const ControlView* view = views_->of(at);
    const bool bare = view == nullptr ? &at == &frame_->content() : view->isBare();
    if (bare) services_.gate.run([this] { form_->Form_Click(); });
  };
}

void ShownForm::applyLook() {
  // Twice is what the toolkit shows once: its mark of changed windows is no text.
  const QString mark = QStringLiteral("[*]");
  frame_->setWindowTitle(
      shownText(beginningOf(form_->Caption.get(), kMostOfTitle)).replace(mark, mark + mark));
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
  return {toPixels(form_->ScaleWidth, scale_), toPixels(form_->ScaleHeight, scale_)};
}

void ShownForm::showFirst() {
  wasShown_ = true;
  size_ = {form_->ScaleWidth, form_->ScaleHeight};
  // The first size is the design's own, whatever the screen leaves of it afterwards.
  raiseResize();
  if (form_ == nullptr) return;
  if (form_->Sizable) frame_->setSmallestContent(contentSize() * kSmallestShare);
  frame_->setContentSize(contentSize());
  if (frame_->scrolls()) views_->keepInSight(*frame_);
  if (form_->Left == 0 && form_->Top == 0) frame_->centerOn(anchorFor(*frame_));
}

void ShownForm::applyPlace() {
  if (const QPoint place(form_->Left, form_->Top); place != place_) {
    place_ = place;
    frame_->moveOnScreen({toPixels(place.x(), scale_), toPixels(place.y(), scale_)});
  }
  if (const QSize size(form_->ScaleWidth, form_->ScaleHeight); size != size_) {
    size_ = size;
    frame_->setContentSize(contentSize());
    if (!form_->Sizable) raiseResize();
  }
}

void ShownForm::applyFocus() {
  const Control* wish = std::exchange(focusWish_, nullptr);
  ControlView* first = wish == nullptr ? nullptr : views_->of(*wish);
  if (first == nullptr) {
    if (frame_->focusWidget() != nullptr) return;
    first = views_->firstFocus();
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
  size_ = {toTwips(content.width(), scale_), toTwips(content.height(), scale_)};
  form_->ScaleWidth.setQuietly(size_.width());
  form_->ScaleHeight.setQuietly(size_.height());
  raiseResize();
}

void ShownForm::raiseResize() {
  services_.gate.runUnattended([this] { form_->Form_Resize(); });
  if (form_ != nullptr && header_) header_->layOut(frame_->font());
}

}  // namespace kelvaron
