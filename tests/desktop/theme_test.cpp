// The theme's contrasts, as the recommendations for accessible contents compute them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "desktop/qt_values.h"
#include "desktop/shell/theme_drawing.h"
#include "platform/shape.h"

namespace kelvaron::testing {
namespace {

double luminance(const QColor& color) {
  const auto part = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({luminance(one), luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

TEST(Theme, Contrasts) {
  using namespace theme;
  struct Case {
    const char* what;
    QColor front;
    QColor ground;
    double least;
  };
  for (const Case& each :
       {Case{"border of a field on the window", kLine, kWindow, 3},
        Case{"border of a field on the field", kLine, kField, 3},
        Case{"border of a menu", kLine, kMenu, 3},
        Case{"scroll handle on a field", kHandle, kField, 3},
        Case{"scroll handle in the room", kHandle, Qt::black, 3},
        Case{"held handle", kHandleHeld, kField, 3},
        Case{"unlit lamp", toQt(Shape::kUnlit), kWindow, 3}, Case{"focus", kAccent, kWindow, 3},
        Case{"text", kText, kWindow, 7}, Case{"text of a button", kText, kButton, 7},
        Case{"selected text", Qt::white, kSelection, 4.5},
        Case{"what is switched off", kDisabledText, kWindow, 4.5}}) {
    EXPECT_GE(contrast(each.front, each.ground), each.least) << each.what;
  }
}

}  // namespace
}  // namespace kelvaron::testing
