#include "tools/pictures/fit.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <vector>

namespace kelvaron::testing {
namespace {

QStringList cutCaptions(const QWidget& window) {
  QStringList cut;
  const auto look = [&](const QWidget& widget, const QString& text, int room) {
    const int needed = widget.fontMetrics().size(Qt::TextShowMnemonic, text).width();
    if (widget.isVisible() && needed > room) cut.append(text);
  };
  for (const auto* button : window.findChildren<QPushButton*>()) {
    look(*button, button->text(), button->width() - 8);
  }
  for (const auto* box : window.findChildren<QCheckBox*>()) {
    look(*box, box->text(),
         box->width() - box->style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, box) - 4);
  }
  for (const auto* frame : window.findChildren<QGroupBox*>()) {
    look(*frame, frame->title(), frame->width() - 20);
  }
  return cut;
}

/// Of labels only those that say what the design says: what others wrote may be longer.
QStringList cutLabels(Form& form, const ShownForm& shown) {
  QStringList cut;
  for (Control* control : form.Controls()) {
    if (control->kind != ControlKind::label || shown.viewOf(*control) == nullptr) continue;
    if (auto& told = static_cast<Label&>(*control); told.Caption.get() != told.DesignCaption) {
      continue;
    }
    const auto& label = static_cast<const QLabel&>(shown.viewOf(*control)->widget());
    const bool low = label.wordWrap() && label.heightForWidth(label.width()) > label.height();
    if (label.isVisible() && (low || label.text().endsWith(QChar(0x2026))))
      cut.append(label.text());
  }
  return cut;
}

/// Where a control stands on its form, however far that is scrolled.
QRect placeOnForm(const Control& control) {
  QRect place(control.Left, control.Top, control.Width, control.Height);
  for (const Control* around = control.container.asControl(); around != nullptr;
       around = around->container.asControl()) {
    place.translate(around->Left, around->Top);
  }
  return place;
}

/// What can't be seen whole of the main button and of the lowest row of buttons.
QStringList buttonsOutOfSight(Form& form, const ShownForm& shown) {
  const QWidget& window = *shown.frame();
  if (!window.screen()->availableGeometry().contains(window.geometry())) {
    return {QStringLiteral("(the window)")};
  }
  std::vector<const CommandButton*> buttons;
  for (const Control* control : form.Controls()) {
    if (control->kind != ControlKind::button || !control->Visible) continue;
    buttons.push_back(static_cast<const CommandButton*>(control));
  }
  int lowest = 0;
  for (const auto* button : buttons) lowest = std::max(lowest, placeOnForm(*button).top());
  QStringList hidden;
  for (const auto* button : buttons) {
    const bool counts = button->Default || button->Main || placeOnForm(*button).bottom() >= lowest;
    const auto& widget = static_cast<const QPushButton&>(shown.viewOf(*button)->widget());
    const bool seen = widget.visibleRegion().boundingRect() == widget.rect();
    if (counts && !seen) hidden.append(widget.text());
  }
  return hidden;
}

}  // namespace

QStringList cutOrOutOfSight(Form& form, const ShownForm& shown) {
  return cutCaptions(*shown.frame()) + cutLabels(form, shown) + buttonsOutOfSight(form, shown);
}

}  // namespace kelvaron::testing
