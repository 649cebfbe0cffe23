// The controls of a form follow its size in whole percents.
#include "chat/resize/resize_forms.h"

#include "platform/menu.h"
#include "platform/shape.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {
namespace {

using Numbers = std::array<int, 4>;

Numbers placeOf(const Control& control) {
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

  Label odd{*this, "odd", {1001, 333, 2001, 77}, ""};
  TextBox parked{*this, "parked", {-74000, 100, 500, 200}};
  Label fixed{*this, "fixed", {1001, 333, 2001, 77}, ""};
  Label almostFixed{*this, "almostFixed", {1001, 333, 2001, 77}, ""};
  Frame frame{*this, "frame", {2000, 1000, 3000, 999}, ""};
  CheckBox inside{frame, "inside", {151, 299, 1001, 301}, ""};
  Label first{*this, "slot", {100, 200, 300, 400}, ""};
  Label wide{*this, "wide", {20'000, 200, 300, 400}, ""};
  Label second{*this, "slot", {1000, 2000, 3000, 4000}, ""};
  Line line{*this, "line", {101, 201, 3001, 77}};
  Line parkedLine{*this, "parkedLine", {-74900, 10, -72000, 30}};
  Timer timer{*this, "timer", 500, false};
  MenuItem menu{*this, "menu", "Menu"};
};

class Resize : public ::testing::Test {
 protected:
  Resize() { forms.ResizeForm(form); }
  void take(int width, int height) {
    form.ScaleWidth = width;
    form.ScaleHeight = height;
    forms.ResizeForm(form);
  }

  Resize_forms forms;
  Sample form;
};

TEST_F(Resize, WholePercentsOfTheFirstLayout) {
  const std::vector<std::tuple<int, int, Numbers>> cases = {
      {10000, 8000, {1001, 333, 2001, 77}},
      {10099, 8079, {1001, 333, 2001, 77}},  // less than a percent
      {10100, 8080, {1011, 336, 2021, 77}},  // 101 percent
      {15000, 4000, {1501, 166, 3001, 38}},  // 150 and 50
      {12345, 7999, {1231, 329, 2461, 76}},  // 123.45 and 99.98: 123 and 99
      {99, 160, {0, 6, 0, 1}},               // 0 and 2
      {1000000, 8000, {100100, 333, 200100, 77}},
      {10000, 8000, {1001, 333, 2001, 77}}};
  EXPECT_EQ(placeOf(form.odd), (Numbers{1001, 333, 2001, 77}));
  // One after the other on the same form: nothing adds up.
  for (const auto& [width, height, odd] : cases) {
    SCOPED_TRACE(std::to_string(width) + " by " + std::to_string(height));
    take(width, height);
    EXPECT_EQ(placeOf(form.odd), odd);
    EXPECT_EQ(placeOf(form.almostFixed), odd);
    EXPECT_EQ(placeOf(form.fixed), (Numbers{1001, 333, 2001, 77}));
  }
}

TEST_F(Resize, FramesArraysLinesAndParkedControls) {
  take(20000, 4000);
  EXPECT_EQ(placeOf(form.frame), (Numbers{4000, 500, 6000, 499}));
  EXPECT_EQ(placeOf(form.inside), (Numbers{302, 149, 2002, 150}));
  EXPECT_EQ(placeOf(form.first), (Numbers{200, 100, 600, 200}));
  EXPECT_EQ(placeOf(form.second), (Numbers{2000, 1000, 6000, 2000}));
  EXPECT_EQ(placeOf(form.parked), (Numbers{-73000, 50, 1000, 100}));
  const auto ends = [](const Line& line) { return Numbers{line.X1, line.Y1, line.X2, line.Y2}; };
  EXPECT_EQ(ends(form.line), (Numbers{202, 100, 6002, 38}));
  // Recorded as 100 and 3000.
  EXPECT_EQ(ends(form.parkedLine), (Numbers{-74800, 5, -69000, 15}));
  // Brought back into sight, it is where it would be.
  form.parked.Left = 10;
  forms.ResizeForm(form);
  EXPECT_EQ(form.parked.Left.get(), 2000);
}

TEST_F(Resize, FarDownNothingMoves) {
  form.Top = 30000;
  take(20000, 8000);
  EXPECT_EQ(form.odd.Left.get(), 1001);
  form.Top = 29999;
  take(20000, 8000);
  EXPECT_EQ(form.odd.Left.get(), 2002);
}

TEST_F(Resize, BaselineOutlivesTheForm) {
  Sample again;
  again.odd.Left = 7;
  // What came later has no record and stays.
  Label late{again, "late", {5, 6, 7, 8}, ""};
  again.ScaleWidth = 20000;
  forms.ResizeForm(again);
  EXPECT_EQ(placeOf(again.odd), (Numbers{2002, 333, 4002, 77}));
  EXPECT_EQ(placeOf(late), (Numbers{5, 6, 7, 8}));
}

TEST_F(Resize, ACallFromWithinACallDoesNothing) {
  int moves = 0;
  form.odd.onRefresh = [&] {
    ++moves;
    take(30000, 8000);
  };
  take(20000, 8000);
  EXPECT_EQ(moves, 1);
  EXPECT_EQ(form.odd.Left.get(), 2002);
  EXPECT_EQ(form.frame.Left.get(), 6000) << "the pass reads the size anew for each control";
  form.odd.onRefresh = nullptr;
  forms.ResizeForm(form);
  EXPECT_EQ(form.odd.Left.get(), 3003);
}

TEST_F(Resize, WhatIsTooLargeOrHadNoSizeIsPassedOver) {
  take(2'000'000'000, 4000);
  EXPECT_EQ(placeOf(form.wide), (Numbers{20'000, 200, 300, 400}));
  EXPECT_EQ(placeOf(form.second), (Numbers{200'000'000, 1000, 600'000'000, 2000}));

  struct Flat : Form {
    Flat() : Form({.name = "Flat", .caption = "", .width = 1000, .height = 0}) {}
    Label label{*this, "label", {100, 100, 100, 100}, ""};
  } flat;
  forms.ResizeForm(flat);
  EXPECT_EQ(placeOf(flat.label), (Numbers{100, 0, 100, 0}));
}

using RoomSize = ClientTest;

TEST_F(RoomSize, RoomFollowsItsWindow) {
  EXPECT_TRUE(room().Sizable);
  const int width = room().ScaleWidth;
  const int height = room().ScaleHeight;
  const auto [left, top, wide, high] = placeOf(room().txtOutput);
  for (const auto& [across, down] : {std::pair{1, 1}, {2, 3}, {1, 1}}) {
    room().ScaleWidth = width * across;
    room().ScaleHeight = height * down;
    room().Form_Resize();
    EXPECT_EQ(placeOf(room().txtOutput),
              (Numbers{left * across, top * down, wide * across, high * down}));
  }
}

}  // namespace
}  // namespace kelvaron::testing
