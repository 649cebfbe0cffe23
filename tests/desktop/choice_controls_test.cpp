// Combo boxes, sliders, progress bars and lamps.
#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSlider>
#include <QWheelEvent>
#include <tuple>

#include "platform/combo_box.h"
#include "platform/progress_bar.h"
#include "platform/shape.h"
#include "platform/slider.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

class Choices : public Form {
 public:
  explicit Choices(Client&)
      : Form({.name = "Choices", .caption = "Choices", .width = 6000, .height = 4500}) {
    for (const char* entry : {"doom.wad", "doom2.wad", "plutonia.wad"}) combo.AddItem(entry);
    lamp.AccessibleName = "Ready";
    named.AccessibleName = "Named";
    slider.Change = [this] { log.push_back(slider.Value); };
  }
  std::vector<int> log;
  TextBox text{*this, "text", {150, 150, 1500, 375}};
  Label label{*this, "label", {150, 600, 1500, 300}, "&File:"};
  ComboBox combo{*this, "combo", {1800, 600, 3000, 375}};
  ComboBox named{*this, "named", {1800, 1050, 3000, 375}};
  Slider slider{*this, "slider", {150, 1500, 3000, 375}, 0, 100, 30};
  ProgressBar bar{*this, "bar", {150, 2000, 3000, 300}};
  Shape lamp{*this, "lamp", {150, 2500, 360, 360}};
};

class ChoiceControls : public FormTest<Choices> {
 protected:
  static void turnWheel(QWidget& over) {
    QWheelEvent wheel(over.rect().center(), over.mapToGlobal(over.rect().center()), {}, {0, -120},
                      {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&over, &wheel);
  }

  const std::string& text = form.combo.Text.get();
  QComboBox& combo = widgetOf<QComboBox>(form.combo);
  QSlider& slider = widgetOf<QSlider>(form.slider);
};
using ComboBoxes = ChoiceControls;

TEST_F(ComboBoxes, TypingAndChoosingAreTextAtOnce) {
  combo.setFocus();
  // "doo" begins two entries and is left as it is; "DOOM.WAD" is one but for its case.
  QTest::keyClicks(&combo, "doo");
  EXPECT_EQ(text, "doo");
  EXPECT_EQ(combo.currentText(), "doo");
  form.combo.Text = "";
  turn();
  QTest::keyClicks(&combo, "DOOM.WAD");
  QTest::keyClick(&combo, Qt::Key_Return);
  form.text.SetFocus();
  turn();
  EXPECT_EQ(text, "DOOM.WAD");
  EXPECT_EQ(combo.currentText(), "DOOM.WAD");
  EXPECT_EQ(combo.count(), 3);

  QTest::keyClick(&combo, Qt::Key_Down);
  EXPECT_EQ(text, "doom.wad");
  combo.showPopup();
  QAbstractItemView& list = *combo.view();
  const QPoint third = list.visualRect(list.model()->index(2, 0)).center();
  QTest::mouseMove(list.viewport(), third);
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, third);
  EXPECT_EQ(text, "plutonia.wad");
}

TEST_F(ComboBoxes, WhatTheCoreSets) {
  ComboBox& box = form.combo;
  const auto fillAgain = [&] {
    for (int i = 0; i < 2; ++i) box.AddItem("b");
    box.Text = "b";
  };
  // What is done; the text, the number of entries and the current one that show.
  using Row = std::tuple<std::function<void()>, const char*, int, int>;
  for (const auto& [change, shown, entries, current] :
       {Row{[&] { box.Text = "doom2.wad"; }, "doom2.wad", 3, 1},
        Row{[&] { box.Text = "\xC4rger\r\n.wad"; }, "Ärger .wad", 3, -1},
        Row{[&] { box.AddItem("tnt.wad"); }, "Ärger .wad", 4, -1},
        Row{[&] { box.Clear(); }, "", 0, -1}, Row{fillAgain, "b", 2, 0}}) {
    change();
    turn();
    EXPECT_EQ(combo.currentText(), shown);
    EXPECT_EQ(combo.count(), entries) << shown;
    EXPECT_EQ(combo.currentIndex(), current) << shown;
  }
}

TEST_F(ComboBoxes, KeysActOnWhatTheCoreSaysNow) {
  form.combo.Text = "new";
  QTest::keyClicks(&combo, "x");
  EXPECT_EQ(text, "newx");
  QGuiApplication::clipboard()->setText(QStringLiteral("→\n"));
  QTest::keyClick(&combo, Qt::Key_Home);
  QTest::keySequence(&combo, QKeySequence::Paste);
  EXPECT_EQ(text, "? newx");
  EXPECT_EQ(combo.currentText(), "? newx");
  EXPECT_EQ(combo.lineEdit()->cursorPosition(), 2);
}

TEST_F(ChoiceControls, WheelOnlyWithTheKeyboard) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  form.combo.Text = "doom.wad";
  form.text.SetFocus();
  turn();
  for (QWidget* over : std::initializer_list<QWidget*>{&combo, combo.lineEdit(), &slider}) {
    turnWheel(*over);
  }
  EXPECT_EQ(text, "doom.wad");
  EXPECT_EQ(form.slider.Value, 30);
  form.combo.SetFocus();
  turn();
  turnWheel(combo);
  EXPECT_EQ(text, "doom2.wad");
}

TEST_F(ChoiceControls, WhatAScreenReaderHears) {
  form.combo.Text = "typed";
  turn();
  EXPECT_EQ(told(combo), "File:");
  EXPECT_EQ(told(combo, QAccessible::Value), "typed");
  EXPECT_EQ(told(*combo.lineEdit()), "File:");
  auto& named = widgetOf<QComboBox>(form.named);
  EXPECT_EQ(told(named), "Named");
  EXPECT_EQ(told(*named.lineEdit()), "Named");

  QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(&combo);
  EXPECT_EQ(voice->role(), QAccessible::ComboBox);
  ASSERT_EQ(voice->childCount(), 2);
  EXPECT_EQ(voice->child(1)->text(QAccessible::Value), "typed");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(voice->indexOfChild(voice->child(i)), i);
  voice->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_TRUE(voice->state().expanded);
  voice->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_FALSE(combo.view()->isVisible());
}

TEST_F(ChoiceControls, EachNewValueOfASliderAtOnce) {
  slider.setFocus();
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_PageUp, Qt::Key_End, Qt::Key_End}) {
    QTest::keyClick(&slider, key);
  }
  form.slider.Value = 20;
  turn();
  EXPECT_EQ(slider.value(), 20);
  EXPECT_THAT(form.log, ElementsAre(31, 41, 100, 20));

  QTest::mouseClick(&slider, Qt::LeftButton, {}, slider.rect().center());
  EXPECT_NEAR(form.slider.Value, 50, 2);
  form.slider.Change = [&] { form.slider.Value = 70; };
  QTest::keyClick(&slider, Qt::Key_Home);
  EXPECT_EQ(slider.value(), 70);
  form.slider.Change = [] {};
  form.slider.Value = 1000;  // beyond the end: shown at the end, and not lost
  turn();
  EXPECT_EQ(slider.value(), slider.maximum());
}

TEST_F(ChoiceControls, ProgressIsAShareOfAWhole) {
  auto& bar = widgetOf<QProgressBar>(form.bar);
  // A value, the whole, and the thousandths that show.
  using Row = std::tuple<std::int64_t, std::int64_t, int>;
  for (const auto& [value, max, thousandths] :
       {Row{50, 100, 500}, Row{0, 0, 0}, Row{5, 0, 0}, Row{-1, 100, 0}, Row{7, 5, 1000},
        Row{3'000'000'000'000, 4'000'000'000'000, 750}, Row{INT64_MAX, INT64_MAX, 1000}}) {
    form.bar.Max = max;
    form.bar.Value = value;
    turn();
    EXPECT_EQ(bar.value() * 1000 / bar.maximum(), thousandths) << value << "/" << max;
  }
}

TEST_F(ChoiceControls, LightAndWordsOfALamp) {
  auto& lamp = widgetOf<QLabel>(form.lamp);
  const auto image = [&] { return lamp.grab().toImage(); };
  EXPECT_EQ(told(lamp), "Ready");
  EXPECT_EQ(told(lamp, QAccessible::Description), "unlit");
  const QImage unlit = image();
  form.lamp.FillColor = Color{0, 200, 0};
  turn();
  EXPECT_EQ(told(lamp, QAccessible::Description), "lit");
  const QColor middle = image().pixelColor(unlit.width() / 2, unlit.height() / 2);
  EXPECT_GT(middle.green(), 150);
  EXPECT_LT(middle.red(), 100);
  // The glow is outside of where the unlit lamp is.
  EXPECT_NE(image().pixelColor(lamp.width() / 2, 2), unlit.pixelColor(lamp.width() / 2, 2));
  form.lamp.FillColor = Shape::kUnlit;
  turn();
  EXPECT_EQ(told(lamp, QAccessible::Description), "unlit");
  EXPECT_EQ(image(), unlit);
}

}  // namespace
}  // namespace kelvaron::testing
