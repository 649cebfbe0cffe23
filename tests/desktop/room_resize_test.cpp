// The room's window takes another size, and its controls follow.
#include <gtest/gtest.h>

#include <QImage>

#include "platform/line.h"
#include "tests/desktop/desk.h"
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

class WithLines : public Form {
 public:
  explicit WithLines(Client& /*owner*/)
      : Form({.name = "WithLines", .caption = "", .width = 1500, .height = 1500}) {
    BackColor = Color{0, 0, 0};
    ForeColor = Color{255, 255, 255};
  }
  Line falling{*this, "falling", {150, 150, 600, 600}};
  Line rising{*this, "rising", {600, 900, 1200, 600}};
  Line level{*this, "level", {150, 1200, 1200, 1200}};
};

TEST(RoomResize, LinesRunBetweenTheirEnds) {
  Desk desk;
  auto& form = desk.show<WithLines>();
  const auto lit = [&](int x, int y) {
    return desk.frame(form)->grab().toImage().pixelColor(x, y).lightness() > 128;
  };
  for (const QPoint end : {QPoint(10, 10), QPoint(40, 40), QPoint(40, 60), QPoint(80, 40),
                           QPoint(10, 80), QPoint(80, 80), QPoint(25, 25), QPoint(60, 50)}) {
    EXPECT_TRUE(lit(end.x(), end.y())) << end.x() << "," << end.y();
  }
  EXPECT_FALSE(lit(40, 10));
  form.level.Y1 = 1350;
  form.level.Y2 = 1350;
  Desk::turn();
  EXPECT_TRUE(lit(10, 90));
  EXPECT_FALSE(lit(10, 80));
}

}  // namespace
}  // namespace kelvaron::testing
