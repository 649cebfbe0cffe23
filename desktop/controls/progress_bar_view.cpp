#include <algorithm>

#include "desktop/controls/views.h"

namespace kelvaron {
namespace {

// The widget counts in int, and files are larger: it shows shares of a whole.
constexpr int kWhole = 1000;

}  // namespace

ProgressBarView::ProgressBarView(ProgressBar& bar, ViewHost& host, QWidget* parent)
    : ControlView(bar, host, new QProgressBar(parent)), bar_(static_cast<QProgressBar&>(widget())) {
  bar_.setRange(0, kWhole);
  bar_.setTextVisible(false);
}

void ProgressBarView::refresh() {
  const auto& bar = static_cast<const ProgressBar&>(*control());
  if (bar.Value.get() > 0 || bar.Max.get() != full_) full_ = 0;
  if (bar.Max.get() > 0 && bar.Value.get() >= bar.Max.get()) full_ = bar.Max.get();
  if (full_ > 0) return bar_.setValue(kWhole);
  const auto max = static_cast<long double>(bar.Max.get());
  const auto value = static_cast<long double>(bar.Value.get());
  bar_.setValue(max <= 0 ? 0 : static_cast<int>(std::clamp(value / max, 0.0L, 1.0L) * kWhole));
}

}  // namespace kelvaron
