// Combo boxes, sliders, progress bars and lamps.
#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSlider>
#include <QWheelEvent>

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

struct ChoiceDesk : Desk {
  ChoiceDesk()
      : form(show<Choices>()),
        combo(widget<QComboBox>(form, form.combo)),
        slider(widget<QSlider>(form, form.slider)) {}
  static QString told(QWidget& widget, QAccessible::Text kind) {
    return QAccessible::queryAccessibleInterface(&widget)->text(kind);
  }
  static void turnWheel(QWidget& over) {
    QWheelEvent wheel(over.rect().center(), over.mapToGlobal(over.rect().center()), {}, {0, -120},
                      {}, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&over, &wheel);
  }

  Choices& form;
  QComboBox& combo;
  QSlider& slider;
};

TEST(ComboBoxes, TypingAndChoosingAreTextAtOnce) {
  ChoiceDesk desk;
  const auto& text = desk.form.combo.Text.get();
  desk.combo.setFocus();
  // "doo" begins two entries and is left as it is; "DOOM.WAD" is one but for its case.
  QTest::keyClicks(&desk.combo, "doo");
  EXPECT_EQ(text, "doo");
  EXPECT_EQ(desk.combo.currentText(), "doo");
  desk.form.combo.Text = "";
  Desk::turn();
  QTest::keyClicks(&desk.combo, "DOOM.WAD");
  QTest::keyClick(&desk.combo, Qt::Key_Return);
  desk.form.text.SetFocus();
  Desk::turn();
  EXPECT_EQ(text, "DOOM.WAD");
  EXPECT_EQ(desk.combo.currentText(), "DOOM.WAD");
  EXPECT_EQ(desk.combo.count(), 3);

  QTest::keyClick(&desk.combo, Qt::Key_Down);
  EXPECT_EQ(text, "doom.wad");
  desk.combo.showPopup();
  QAbstractItemView& list = *desk.combo.view();
  QTest::mouseMove(list.viewport(), list.visualRect(list.model()->index(2, 0)).center());
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                    list.visualRect(list.model()->index(2, 0)).center());
  EXPECT_EQ(text, "plutonia.wad");
}

TEST(ComboBoxes, WhatTheCoreSets) {
  ChoiceDesk desk;
  struct Row {
    const char* what;
    std::function<void(ComboBox&)> change;
    const char16_t* shown;
    int entries;
    int current;
  };
  const Row rows[] = {
      {"a text of the list", [](ComboBox& box) { box.Text = "doom2.wad"; }, u"doom2.wad", 3, 1},
      {"another", [](ComboBox& box) { box.Text = "\xC4rger\r\n.wad"; }, u"Ärger .wad", 3, -1},
      {"one more entry", [](ComboBox& box) { box.AddItem("tnt.wad"); }, u"Ärger .wad", 4, -1},
      {"nothing",
       [](ComboBox& box) {
         box.Text = "left over";
         box.Clear();
       },
       u"", 0, -1},
      {"the same list again",
       [](ComboBox& box) {
         box.AddItem("b");
         box.AddItem("b");
         box.Text = "b";
       },
       u"b", 2, 0},
  };
  for (const Row& row : rows) {
    row.change(desk.form.combo);
    Desk::turn();
    EXPECT_EQ(desk.combo.currentText(), QString::fromUtf16(row.shown)) << row.what;
    EXPECT_EQ(desk.combo.count(), row.entries) << row.what;
    EXPECT_EQ(desk.combo.currentIndex(), row.current) << row.what;
  }
}

TEST(ComboBoxes, KeysActOnWhatTheCoreSaysNow) {
  ChoiceDesk desk;
  desk.form.combo.Text = "new";
  QTest::keyClicks(&desk.combo, "x");
  EXPECT_EQ(desk.form.combo.Text.get(), "newx");
  QGuiApplication::clipboard()->setText(QStringLiteral("→\n"));
  QTest::keyClick(&desk.combo, Qt::Key_Home);
  QTest::keySequence(&desk.combo, QKeySequence::Paste);
  EXPECT_EQ(desk.form.combo.Text.get(), "? newx");
  EXPECT_EQ(desk.combo.currentText(), "? newx");
  EXPECT_EQ(desk.combo.lineEdit()->cursorPosition(), 2);
}

TEST(ChoiceControls, WheelOnlyWithTheKeyboard) {
  ChoiceDesk desk;
  ASSERT_TRUE(QTest::qWaitForWindowActive(desk.frame(desk.form)));
  desk.form.combo.Text = "doom.wad";
  desk.form.text.SetFocus();
  Desk::turn();
  for (QWidget* over :
       {static_cast<QWidget*>(&desk.combo), static_cast<QWidget*>(desk.combo.lineEdit()),
        static_cast<QWidget*>(&desk.slider)}) {
    ChoiceDesk::turnWheel(*over);
  }
  EXPECT_EQ(desk.form.combo.Text.get(), "doom.wad");
  EXPECT_EQ(desk.form.slider.Value, 30);
  desk.form.combo.SetFocus();
  Desk::turn();
  ChoiceDesk::turnWheel(desk.combo);
  EXPECT_EQ(desk.form.combo.Text.get(), "doom2.wad");
}

TEST(ChoiceControls, WhatAScreenReaderHears) {
  ChoiceDesk desk;
  desk.form.combo.Text = "typed";
  desk.form.slider.AccessibleName = "Volume";
  Desk::turn();
  EXPECT_EQ(ChoiceDesk::told(desk.combo, QAccessible::Name), "File:");
  EXPECT_EQ(ChoiceDesk::told(desk.combo, QAccessible::Value), "typed");
  EXPECT_EQ(ChoiceDesk::told(*desk.combo.lineEdit(), QAccessible::Name), "File:");
  auto& named = desk.widget<QComboBox>(desk.form, desk.form.named);
  EXPECT_EQ(ChoiceDesk::told(named, QAccessible::Name), "Named");
  EXPECT_EQ(ChoiceDesk::told(*named.lineEdit(), QAccessible::Name), "Named");

  QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(&desk.combo);
  EXPECT_EQ(voice->role(), QAccessible::ComboBox);
  ASSERT_EQ(voice->childCount(), 2);
  EXPECT_EQ(voice->child(1)->text(QAccessible::Value), "typed");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(voice->indexOfChild(voice->child(i)), i);
  voice->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_TRUE(voice->state().expanded);
  voice->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_FALSE(desk.combo.view()->isVisible());
}

TEST(Sliders, EachNewValueAtOnce) {
  ChoiceDesk desk;
  desk.slider.setFocus();
  QTest::keyClick(&desk.slider, Qt::Key_Right);
  QTest::keyClick(&desk.slider, Qt::Key_PageUp);
  QTest::keyClick(&desk.slider, Qt::Key_End);
  QTest::keyClick(&desk.slider, Qt::Key_End);
  desk.form.slider.Value = 20;
  Desk::turn();
  EXPECT_EQ(desk.slider.value(), 20);
  EXPECT_THAT(desk.form.log, ElementsAre(31, 41, 100, 20));

  QTest::mouseClick(&desk.slider, Qt::LeftButton, {},
                    {desk.slider.width() / 2, desk.slider.height() / 2});
  EXPECT_NEAR(desk.form.slider.Value, 50, 2);
  desk.form.slider.Change = [&] { desk.form.slider.Value = 70; };
  QTest::keyClick(&desk.slider, Qt::Key_Home);
  EXPECT_EQ(desk.slider.value(), 70);
  desk.form.slider.Change = [] {};
  desk.form.slider.Value = 1000;  // beyond the end: shown at the end, and not lost
  Desk::turn();
  EXPECT_EQ(desk.slider.value(), desk.slider.maximum());
}

TEST(ProgressBars, SharesOfAWhole) {
  ChoiceDesk desk;
  auto& bar = desk.widget<QProgressBar>(desk.form, desk.form.bar);
  struct Row {
    std::int64_t value;
    std::int64_t max;
    int thousandths;
  };
  const Row rows[] = {{50, 100, 500},
                      {0, 0, 0},
                      {5, 0, 0},
                      {-1, 100, 0},
                      {7, 5, 1000},
                      {3'000'000'000'000, 4'000'000'000'000, 750},
                      {INT64_MAX, INT64_MAX, 1000}};
  for (const Row& row : rows) {
    desk.form.bar.Max = row.max;
    desk.form.bar.Value = row.value;
    Desk::turn();
    EXPECT_EQ(bar.value() * 1000 / bar.maximum(), row.thousandths) << row.value << "/" << row.max;
  }
}

TEST(Lamps, LightAndWords) {
  ChoiceDesk desk;
  auto& lamp = desk.widget<QLabel>(desk.form, desk.form.lamp);
  const auto middle = [&] {
    return lamp.grab().toImage().pixelColor(lamp.grab().width() / 2, lamp.grab().height() / 2);
  };
  EXPECT_EQ(ChoiceDesk::told(lamp, QAccessible::Name), "Ready");
  EXPECT_EQ(ChoiceDesk::told(lamp, QAccessible::Description), "unlit");
  const QImage unlit = lamp.grab().toImage();
  desk.form.lamp.FillColor = Color{0, 200, 0};
  Desk::turn();
  EXPECT_EQ(ChoiceDesk::told(lamp, QAccessible::Description), "lit");
  EXPECT_GT(middle().green(), 150);
  EXPECT_LT(middle().red(), 100);
  // The glow is outside of where the unlit lamp is.
  EXPECT_NE(lamp.grab().toImage().pixelColor(lamp.width() / 2, 2),
            unlit.pixelColor(lamp.width() / 2, 2));
  desk.form.lamp.FillColor = Shape::kUnlit;
  Desk::turn();
  EXPECT_EQ(ChoiceDesk::told(lamp, QAccessible::Description), "unlit");
  EXPECT_EQ(lamp.grab().toImage(), unlit);
}

}  // namespace
}  // namespace kelvaron::testing
