// The room's window takes another size, and its controls follow.
#include <gtest/gtest.h>

#include "tests/desktop/room_desk.h"

namespace kelvaron::testing {
namespace {

TEST(RoomResize, ControlsFollowTheWindow) {
  RoomDesk desk;
  const QSize design(960, 632);
  const int bar = desk.frame().height() - desk.frame().content().height();
  const auto geometry = [&](const Control& control) { return desk.widgetOf(control).geometry(); };
  // Whatever the screen left of it at first, the design is what is measured against.
  desk.frame().resize(design.width(), design.height() + bar);
  QTest::qWait(1);
  EXPECT_EQ(geometry(desk.room().txtOutput), QRect(14, 76, 712, 500));

  // 75 and 50 percent; twips first, so 14 pixels are 210 twips and become 157, which is 10 pixels.
  desk.frame().resize(720, 316 + bar);
  QTest::qWait(1);
  EXPECT_EQ(geometry(desk.room().txtOutput), QRect(10, 38, 534, 250));
  EXPECT_EQ(geometry(desk.room().Frame1).width(), 120);
  EXPECT_EQ(geometry(desk.room().Label9), QRect(9, 13, 102, 12)) << "inside a hidden frame too";
  desk.frame().resize(design.width() + 9, design.height() + bar);
  QTest::qWait(1);
  EXPECT_EQ(geometry(desk.room().txtOutput), QRect(14, 76, 712, 500)) << "less than a percent";
}

}  // namespace
}  // namespace kelvaron::testing
