#include "chat/resize/resize_forms.h"

#include <limits>
#include <string_view>
#include <utility>

#include "base/scope_exit.h"
#include "platform/fault.h"
#include "platform/shape.h"

namespace kelvaron {
namespace {

constexpr std::string_view kStaysTag = "Resize=N";
/// What a control that is parked beyond the left edge was moved by.
constexpr int kParkedBy = 75'000;
/// A form this far down is out of sight.
constexpr int kOutOfSightTop = 30'000;

int normalised(int left) { return left < 0 ? left + kParkedBy : left; }

std::int32_t narrowed(std::int64_t value) {
  if (value < std::numeric_limits<std::int32_t>::min() ||
      value > std::numeric_limits<std::int32_t>::max()) {
    throw Fault(fault_number::kOverflow, "The form is too large");
  }
  return static_cast<std::int32_t>(value);
}

int percent(int present, int atFirst) {
  if (atFirst == 0) throw Fault(fault_number::kInvalidCall, "The form had no size at first");
  return narrowed(std::int64_t{present} * 100 / atFirst);
}

int scaled(int percentage, int length) { return narrowed(std::int64_t{percentage} * length / 100); }

// Where it is now tells whether it is parked.
int scaledLeft(int percentage, int recorded, int present) {
  return narrowed(std::int64_t{scaled(percentage, recorded)} - (present < 0 ? kParkedBy : 0));
}

}  // namespace

int Resize_forms::FindFormLayout(const Form& form) const {
  for (std::size_t i = 0; i < FormLayouts.size(); ++i) {
    if (FormLayouts[i].Name == form.Name) return static_cast<int>(i);
  }
  return -1;
}

int Resize_forms::FindControlLayout(const Control& control, const std::string& formName) const {
  for (std::size_t i = 0; i < ControlLayouts.size(); ++i) {
    const LayoutRecord& record = ControlLayouts[i];
    if (record.FormName == formName && record.Name == control.Name &&
        record.Index == control.Index.value_or(record.Index)) {
      return static_cast<int>(i);
    }
  }
  return -1;
}

int Resize_forms::AddFormLayout(const Form& form) {
  FormLayouts.push_back({.Name = form.Name,
                         .Top = form.Top,
                         .Left = form.Left,
                         .Height = form.ScaleHeight,
                         .Width = form.ScaleWidth,
                         .ScaleHeight = form.ScaleHeight,
                         .ScaleWidth = form.ScaleWidth});
  for (const Control* control : form.Controls()) {
    if (FindControlLayout(*control, form.Name) < 0) AddControlLayout(*control, form.Name);
  }
  return static_cast<int>(FormLayouts.size()) - 1;
}

int Resize_forms::AddControlLayout(const Control& control, const std::string& formName) {
  LayoutRecord record{
      .Name = control.Name, .Index = control.Index.value_or(0), .FormName = formName};
  if (control.kind == ControlKind::line) {
    const auto& line = static_cast<const Line&>(control);
    record.Top = line.Y1;
    record.Left = normalised(line.X1);
    record.Height = line.Y2;
    record.Width = normalised(line.X2);
  } else {
    record.Top = control.Top;
    record.Left = normalised(control.Left);
    record.Height = control.Height;
    record.Width = control.Width;
  }
  ControlLayouts.push_back(std::move(record));
  return static_cast<int>(ControlLayouts.size()) - 1;
}

const Resize_forms::LayoutRecord& Resize_forms::baseline(const Form& form) {
  int found = FindFormLayout(form);
  if (found < 0) found = AddFormLayout(form);
  return FormLayouts[static_cast<std::size_t>(found)];
}

int Resize_forms::WidthPercent(const Form& form) {
  return percent(form.ScaleWidth, baseline(form).ScaleWidth);
}

int Resize_forms::HeightPercent(const Form& form) {
  return percent(form.ScaleHeight, baseline(form).ScaleHeight);
}

void Resize_forms::ResizeControl(Control& control, const Form& form) {
  if (control.Tag.get().starts_with(kStaysTag)) return;
  int height = 0;
  int width = 0;
  // The height comes first: on a form's first resize it takes the baseline.
  const FaultRule rule = FaultRule::goOn();
  rule.step([&] { height = HeightPercent(form); });
  rule.step([&] { width = WidthPercent(form); });
  const int found = FindControlLayout(control, form.Name);
  if (found < 0) return;
  const LayoutRecord& record = ControlLayouts[static_cast<std::size_t>(found)];

  // Always from the record, so that rounding doesn't add up over many sizes.
  rule.step([&] {
    if (control.kind == ControlKind::line) {
      auto& line = static_cast<Line&>(control);
      line.X1 = scaledLeft(width, record.Left, line.X1);
      line.Y1 = scaled(height, record.Top);
      line.X2 = scaledLeft(width, record.Width, line.X2);
      line.Y2 = scaled(height, record.Height);
      return;
    }
    control.Move({.left = scaledLeft(width, record.Left, control.Left),
                  .top = scaled(height, record.Top),
                  .width = scaled(width, record.Width),
                  .height = scaled(height, record.Height)});
  });
}

void Resize_forms::ResizeForm(Form& form) {
  // Moving controls can bring further sizes of the form.
  if (std::exchange(ResizeBusy, true)) return;
  const ScopeExit done([this] { ResizeBusy = false; });
  if (form.Top >= kOutOfSightTop) return;
  const bool visible = form.Visible;
  for (Control* control : form.Controls()) ResizeControl(*control, form);
  form.Visible = visible;
}

}  // namespace kelvaron
