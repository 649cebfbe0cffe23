// The controls of a form follow its size in whole percents.
#include "chat/resize/resize_forms.h"

#include <gtest/gtest.h>

#include <ostream>

#include "platform/controls.h"
#include "platform/line.h"
#include "platform/menu.h"
#include "tests/support/line_server.h"
#include "tests/support/test_desktop.h"

namespace kelvaron {

static void PrintTo(const Place& place, std::ostream* out) {
  *out << place.left << ',' << place.top << ' ' << place.width << 'x' << place.height;
}

namespace testing {
namespace {

Place placeOf(const Control& control) {
  return {control.Left, control.Top, control.Width, control.Height};
}

// 10000 by 8000 twips, so that a percent is 100 and 80.
struct Sample : Form {
  Sample() : Form({.name = "Sample", .caption = "", .width = 10000, .height = 8000}) {
    fixed.Tag = "Resize=No, never";
    almostFixed.Tag = "resize=N";
    second.Index = 1;
    first.Index = 0;
  }
  void take(int width, int height) {
    ScaleWidth = width;
    ScaleHeight = height;
  }

  Label odd{*this, "odd", {1001, 333, 2001, 77}, ""};
  TextBox parked{*this, "parked", {-74000, 100, 500, 200}};
  Label fixed{*this, "fixed", {1001, 333, 2001, 77}, ""};
  Label almostFixed{*this, "almostFixed", {1001, 333, 2001, 77}, ""};
  Frame frame{*this, "frame", {2000, 1000, 3000, 999}, ""};
  CheckBox inside{frame, "inside", {151, 299, 1001, 301}, ""};
  Label first{*this, "slot", {100, 200, 300, 400}, ""};
  Label second{*this, "slot", {1000, 2000, 3000, 4000}, ""};
  Line line{*this, "line", {101, 201, 3001, 77}};
  Line parkedLine{*this, "parkedLine", {-74900, 10, -72000, 30}};
  Timer timer{*this, "timer", 500, false};
  MenuItem menu{*this, "menu", "Menu"};
};

TEST(Resize, WholePercentsOfTheFirstLayout) {
  struct Case {
    int width;
    int height;
    Place odd;
  };
  Resize_forms forms;
  Sample form;
  // One after the other on the same form: nothing adds up.
  for (const Case& each : {
           Case{10000, 8000, {1001, 333, 2001, 77}},
           Case{10099, 8079, {1001, 333, 2001, 77}},  // less than a percent
           Case{10100, 8080, {1011, 336, 2021, 77}},  // 101 percent
           Case{15000, 4000, {1501, 166, 3001, 38}},  // 150 and 50
           Case{12345, 7999, {1231, 329, 2461, 76}},  // 123.45 and 99.98: 123 and 99
           Case{300, 160, {30, 6, 60, 1}},            // 3 and 2
           Case{99, 0, {0, 0, 0, 0}},                 // 0 and 0
           Case{1000000, 8000, {100100, 333, 200100, 77}},
           Case{10000, 8000, {1001, 333, 2001, 77}},
       }) {
    SCOPED_TRACE(std::to_string(each.width) + " by " + std::to_string(each.height));
    form.take(each.width, each.height);
    forms.ResizeForm(form);
    EXPECT_EQ(placeOf(form.odd), each.odd);
    EXPECT_EQ(placeOf(form.almostFixed), each.odd);
    EXPECT_EQ(placeOf(form.fixed), (Place{1001, 333, 2001, 77}));
  }
}

TEST(Resize, FramesArraysLinesAndParkedControls) {
  Resize_forms forms;
  Sample form;
  forms.ResizeForm(form);
  form.take(20000, 4000);
  forms.ResizeForm(form);
  EXPECT_EQ(placeOf(form.frame), (Place{4000, 500, 6000, 499}));
  EXPECT_EQ(placeOf(form.inside), (Place{302, 149, 2002, 150}));
  EXPECT_EQ(placeOf(form.first), (Place{200, 100, 600, 200}));
  EXPECT_EQ(placeOf(form.second), (Place{2000, 1000, 6000, 2000}));
  EXPECT_EQ(placeOf(form.parked), (Place{-73000, 50, 1000, 100}));
  const auto ends = [](const Line& line) { return Place{line.X1, line.Y1, line.X2, line.Y2}; };
  EXPECT_EQ(ends(form.line), (Place{202, 100, 6002, 38}));
  // Recorded as 100 and 3000.
  EXPECT_EQ(ends(form.parkedLine), (Place{-74800, 5, -69000, 15}));
  // Brought back into sight, it is where it would be.
  form.parked.Left = 10;
  forms.ResizeForm(form);
  EXPECT_EQ(form.parked.Left.get(), 2000);
}

TEST(Resize, FarDownNothingMoves) {
  Resize_forms forms;
  Sample form;
  forms.ResizeForm(form);
  form.take(20000, 8000);
  form.Top = 30000;
  forms.ResizeForm(form);
  EXPECT_EQ(form.odd.Left.get(), 1001);
  form.Top = 29999;
  forms.ResizeForm(form);
  EXPECT_EQ(form.odd.Left.get(), 2002);
}

TEST(Resize, BaselineOutlivesTheForm) {
  Resize_forms forms;
  {
    Sample form;
    forms.ResizeForm(form);
  }
  Sample again;
  again.odd.Left = 7;
  again.take(20000, 8000);
  forms.ResizeForm(again);
  EXPECT_EQ(placeOf(again.odd), (Place{2002, 333, 4002, 77}));
  // What came later has no record and stays.
  Label late{again, "late", {5, 6, 7, 8}, ""};
  forms.ResizeForm(again);
  EXPECT_EQ(placeOf(late), (Place{5, 6, 7, 8}));
}

TEST(Resize, ACallFromWithinACallDoesNothing) {
  Resize_forms forms;
  Sample form;
  forms.ResizeForm(form);
  form.take(20000, 8000);
  int moves = 0;
  form.odd.onRefresh = [&] {
    ++moves;
    form.take(30000, 8000);
    forms.ResizeForm(form);
  };
  forms.ResizeForm(form);
  EXPECT_EQ(moves, 1);
  EXPECT_EQ(form.odd.Left.get(), 2002);
  EXPECT_EQ(form.frame.Left.get(), 6000) << "the pass reads the size anew for each control";
  form.odd.onRefresh = nullptr;
  forms.ResizeForm(form);
  EXPECT_EQ(form.odd.Left.get(), 3003);
}

TEST(Resize, WhatIsTooLargeOrHadNoSizeIsPassedOver) {
  Resize_forms forms;
  Sample form;
  form.first.Left = 20'000;
  forms.ResizeForm(form);
  form.take(2'000'000'000, 4000);
  forms.ResizeForm(form);
  EXPECT_EQ(placeOf(form.first), (Place{20'000, 200, 300, 400}));
  EXPECT_EQ(placeOf(form.second), (Place{200'000'000, 1000, 600'000'000, 2000}));

  struct Flat : Form {
    Flat() : Form({.name = "Flat", .caption = "", .width = 1000, .height = 0}) {}
    Label label{*this, "label", {100, 100, 100, 100}, ""};
  } flat;
  forms.ResizeForm(flat);
  EXPECT_EQ(placeOf(flat.label), (Place{100, 0, 100, 0}));
}

TEST(Resize, TheRoomFollowsItsWindow) {
  PollLoop loop;
  LineServer server{loop};
  TestDesktop desktop{loop, server.port()};
  ASSERT_TRUE(desktop.logIn("bob"));
  frmMain& room = desktop.room();
  EXPECT_TRUE(room.Sizable);
  const int width = room.ScaleWidth;
  const int height = room.ScaleHeight;
  const Place atFirst = placeOf(room.txtOutput);
  room.Form_Resize();
  EXPECT_EQ(placeOf(room.txtOutput), atFirst);
  room.ScaleWidth = width * 2;
  room.ScaleHeight = height * 3;
  room.Form_Resize();
  EXPECT_EQ(placeOf(room.txtOutput),
            (Place{atFirst.left * 2, atFirst.top * 3, atFirst.width * 2, atFirst.height * 3}));
  EXPECT_EQ(room.Label3.Font_.get().points, 18);
  room.ScaleWidth = width;
  room.ScaleHeight = height;
  room.Form_Resize();
  EXPECT_EQ(placeOf(room.txtOutput), atFirst);
}

}  // namespace
}  // namespace testing
}  // namespace kelvaron
