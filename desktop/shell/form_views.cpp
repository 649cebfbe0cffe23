#include "desktop/shell/form_views.h"

#include <algorithm>

#include "desktop/shell/form_frame.h"

namespace kelvaron {

FormViews::FormViews(Form& form, ViewHost& host, QWidget& content) {
  for (Control* control : form.Controls()) {
    const Control* within = control->container.asControl();
    QWidget& parent = within == nullptr ? content : of(*within)->widget();
    if (auto view = makeView(*control, host, &parent)) views_.push_back(std::move(view));
  }
  for (std::size_t i = 0; i + 1 < views_.size(); ++i) {
    if (views_[i + 1]->wantsLabel()) views_[i]->nameNext(*views_[i + 1]);
  }
}

void FormViews::keepInSight(FormFrame& frame) const {
  constexpr int kAbove = 8;
  constexpr int kAir = 8;
  constexpr int kBeforeButtons = 12;
  constexpr int kMostOfFrame = 3;
  const auto inRow = [&](const ControlView& view) {
    return view.isButton() && view.widget().parentWidget() == &frame.content();
  };
  int lowest = 0;
  for (const auto& view : views_) {
    if (inRow(*view)) lowest = std::max(lowest, view->widget().y());
  }
  const int top = lowest - kAbove;
  const auto reachesRow = [&](const auto& view) {
    const QWidget& widget = view->widget();
    return widget.parentWidget() == &frame.content() && !widget.isHidden() &&
           widget.geometry().bottom() >= top;
  };
  const auto speaks = [](const ControlView& view) {
    return view.control()->kind == ControlKind::label;
  };
  // Whatever else stands so low belongs to what scrolls.
  if (lowest == 0 || frame.content().height() - top > frame.height() / kMostOfFrame ||
      std::ranges::any_of(views_, [&](const auto& view) {
        return reachesRow(view) && !inRow(*view) && !speaks(*view);
      })) {
    return;
  }
  QWidget& row = frame.splitOff(top, kAir);
  const int beyond = std::max(0, frame.content().width() - frame.width());
  int first = frame.width();
  for (const auto& view : views_) {
    if (!reachesRow(view) || !inRow(*view)) continue;
    view->moveInto(row, {beyond, top - kAir});
    first = std::min(first, view->widget().x());
  }
  for (const auto& view : views_) {
    if (!reachesRow(view)) continue;
    view->moveInto(row, {0, top - kAir});
    const QWidget& label = view->widget();
    const QRect place(label.pos(), QPoint(first - kBeforeButtons, row.height() - 1));
    if (beyond > 0 && place.isValid()) view->layOut(place, label.font());
  }
}

void FormViews::detach() {
  for (const auto& view : views_) view->detach();
}

ControlView* FormViews::of(const Control& control) const {
  const auto found = std::ranges::find(views_, &control, &ControlView::control);
  return found == views_.end() ? nullptr : found->get();
}

ControlView* FormViews::of(const QWidget& widget) const {
  const auto shows = [&](const auto& view) {
    return view->attached() && &view->widget() == &widget;
  };
  const auto found = std::ranges::find_if(views_, shows);
  return found == views_.end() ? nullptr : found->get();
}

bool FormViews::press(PressedBy key) const {
  return std::ranges::any_of(
      views_, [&](const auto& view) { return view->attached() && view->press(key); });
}

void FormViews::typeAhead(const QString& text) const {
  std::ranges::any_of(views_,
                      [&](const auto& view) { return view->attached() && view->type(text); });
}

ControlView* FormViews::firstFocus() const {
  using FirstFocus = ControlView::FirstFocus;
  ControlView* toRead = nullptr;
  for (const auto& view : views_) {
    const FirstFocus focus = view->usable() ? view->firstFocus() : FirstFocus::never;
    if (focus == FirstFocus::usual) return view.get();
    if (focus == FirstFocus::toRead && toRead == nullptr) toRead = view.get();
  }
  return toRead;
}

}  // namespace kelvaron
