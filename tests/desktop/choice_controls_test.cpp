// List and combo boxes, sliders, progress bars and lamps.
#include <gmock/gmock.h>

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QProgressBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QWheelEvent>

#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

class ChoiceControls : public FormTest<ManyControls> {
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
  form.name.SetFocus();
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

// On some desktops the form's window keeps the keyboard while a list is open.
TEST_F(ComboBoxes, AKeyThatClosesTheListDoesNothingElse) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  form.ok.Default = true;
  form.cancel.Cancel = true;
  form.combo.SetFocus();
  const auto press = [&](Qt::Key key) { QTest::keyClick(window().windowHandle(), key); };
  using Row = std::tuple<Qt::Key, const char*, const char*>;
  for (const auto& [key, chosen, presses] :
       {Row{Qt::Key_Escape, "doom.wad", "cancel"}, Row{Qt::Key_Return, "doom2.wad", "ok"}}) {
    form.combo.Text = "doom.wad";
    turn();
    combo.showPopup();
    press(Qt::Key_Down);
    ASSERT_TRUE(combo.view()->isVisible());
    press(key);
    EXPECT_FALSE(combo.view()->isVisible()) << chosen;
    EXPECT_EQ(text, chosen);
    EXPECT_THAT(form.log, ElementsAre()) << chosen;
    turn();
    press(key);
    EXPECT_THAT(std::exchange(form.log, {}), ElementsAre(presses));
  }
}

TEST_F(ComboBoxes, WhatTheCoreSets) {
  ComboBox& box = form.combo;
  using Row = std::tuple<std::function<void()>, const char*, int, int>;
  for (const auto& [change, shown, entries, current] :
       {Row{[&] { box.Text = "doom2.wad"; }, "doom2.wad", 3, 1},
        Row{[&] { box.Text = "\xC4rger\r\n.wad"; }, "Ärger .wad", 3, -1},
        Row{[&] { box.AddItem("tnt.wad"); }, "Ärger .wad", 4, -1},
        Row{[&] { box.Clear(); }, "", 0, -1}, Row{[&] { box.AddItem("b"); }, "", 1, -1},
        Row{[&] { box.Text = "b"; }, "b", 1, 0}}) {
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
  form.name.SetFocus();
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
  std::vector<int> values;
  form.slider.Change = [&] { values.push_back(form.slider.Value); };
  slider.setFocus();
  for (const Qt::Key key : {Qt::Key_Right, Qt::Key_PageUp, Qt::Key_End, Qt::Key_End}) {
    QTest::keyClick(&slider, key);
  }
  form.slider.Value = 20;
  turn();
  EXPECT_EQ(slider.value(), 20);
  EXPECT_THAT(values, ElementsAre(31, 41, 100, 20));

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
  using Row = std::tuple<std::int64_t, std::int64_t, int>;
  for (const auto& [value, max, thousandths] :
       {Row{50, 100, 500}, Row{0, 0, 0}, Row{5, 0, 0}, Row{-1, 100, 0}, Row{7, 5, 1000},
        // What was full stays so until something else begins.
        Row{0, 5, 1000}, Row{0, 6, 0}, Row{6, 6, 1000}, Row{0, 6, 1000}, Row{3, 6, 500},
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
  EXPECT_EQ(image(), unlit);
}

class ListBoxes : public FormTest<ManyControls> {
 protected:
  ListBoxes() {
    form.people.Click = [this] { note("click"); };
    form.people.DblClick = [this] { note("double"); };
    form.people.MouseUp = [this](MouseButton button) {
      note(button == MouseButton::right ? "right" : "left");
    };
    fill(40);
    turn();
  }
  void note(const std::string& event) { form.log.push_back(event + " " + form.people.Text()); }
  /// The events since the last call.
  std::vector<std::string> log() { return std::exchange(form.log, {}); }
  void fill(int count) {
    form.people.Clear();
    for (int i = 0; i < count; ++i) form.people.AddItem("p" + std::to_string(100 + i));
  }
  QPoint at(int row) const { return list.visualRect(list.model()->index(row, 0)).center(); }
  void click(int row, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(list.viewport(), button, keys, at(row));
  }
  std::vector<int> selected() const {
    std::vector<int> rows;
    for (int i = 0; i < form.people.ListCount(); ++i) {
      if (form.people.Selected(i)) rows.push_back(i);
    }
    return rows;
  }
  auto shownSelected() const { return list.selectionModel()->selectedIndexes().size(); }

  QListView& list = widgetOf<QListView>(form.people);
};

TEST_F(ListBoxes, OneResetATurnAndNothingIsLost) {
  click(3);
  click(5, Qt::LeftButton, Qt::ControlModifier);
  list.verticalScrollBar()->setValue(7);
  QSignalSpy resets(list.model(), &QAbstractItemModel::modelReset);
  for (int i = 0; i < 20; ++i) fill(50 + i);
  EXPECT_EQ(resets.size(), 0);
  turn();
  EXPECT_EQ(resets.size(), 1);
  EXPECT_EQ(list.model()->rowCount(), 69);
  EXPECT_EQ(shownSelected(), 2);
  EXPECT_THAT(selected(), ElementsAre(3, 5));
  EXPECT_EQ(list.currentIndex().row(), 5);
  EXPECT_EQ(list.verticalScrollBar()->value(), 7);

  fill(69);  // the same again
  turn();
  EXPECT_EQ(resets.size(), 1);
}

TEST_F(ListBoxes, SelectingByMouseAndKeyboard) {
  click(2);
  click(4, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_THAT(selected(), ElementsAre(2, 3, 4));
  EXPECT_EQ(form.people.Text(), "p104");
  click(1);
  log();
  QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(selected(), ElementsAre(1, 2));
  EXPECT_THAT(log(), ElementsAre("click p102"));

  QTest::mousePress(list.viewport(), Qt::LeftButton, {}, at(0));
  for (const int row : {1, 2, 3}) {
    QMouseEvent drag(QEvent::MouseMove, at(row), list.viewport()->mapToGlobal(at(row)),
                     Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &drag);
  }
  QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, at(3));
  EXPECT_THAT(selected(), ElementsAre(0, 1, 2, 3));
}

TEST_F(ListBoxes, EventsOfTheButtons) {
  click(2);
  EXPECT_THAT(log(), ElementsAre("click p102", "left p102"));
  click(5, Qt::RightButton);
  EXPECT_THAT(log(), ElementsAre("right p102"));
  EXPECT_THAT(selected(), ElementsAre(2));
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(&list, &menuKey);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at(2));
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_THAT(log(), ElementsAre("right p102", "double p102", "double p102"));
}

TEST_F(ListBoxes, ClickBeforeARebuildIsShown) {
  const QPoint second = at(1);
  form.people.AddItem("a first");  // moves every entry down, in the next turn
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(form.people.Text(), "p100");
  form.people.setListIndex(form.people.ListCount() - 1);
  turn();
  EXPECT_TRUE(list.viewport()->rect().intersects(list.visualRect(list.currentIndex())));
}

TEST_F(ListBoxes, AFileIsDroppedOnAnEntry) {
  std::vector<std::string> dropped;
  form.people.FileDropped = [&](const std::string& path) {
    dropped.push_back(form.people.Text() + ' ' + path);
  };
  // The view asks for the handler when it is made.
  list.setAcceptDrops(true);
  click(4);
  const auto drop = [&](QPointF place, const QList<QUrl>& urls) {
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enters(place.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &enters);
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &event);
  };
  const QUrl file("file:///w/a%20file.wad");
  drop(at(2), {QUrl("http://localhost/a")});
  drop(at(2), {file, file});
  drop({5, 5000}, {file});
  EXPECT_THAT(dropped, ElementsAre());
  drop(at(2), {file});
  EXPECT_THAT(dropped, ElementsAre("p102 /w/a file.wad"));
  EXPECT_THAT(selected(), ElementsAre(2));
}

TEST_F(ListBoxes, TellTheirNumberWhereThereIsRoom) {
  form.people.CountedAs = "player";
  const auto head = [&] {
    const auto* label = list.findChild<QLabel*>();
    return label == nullptr || !label->isVisible() ? QString() : label->text();
  };
  fill(3);
  turn();
  EXPECT_EQ(head(), "") << "a low list needs its rows";
  form.people.Height = 4500;
  turn();
  EXPECT_EQ(head(), "3 players");
  EXPECT_GE(list.viewport()->y(), list.findChild<QLabel*>()->geometry().bottom());
  fill(1);
  turn();
  EXPECT_EQ(head(), "1 player");
}

TEST_F(ListBoxes, TheKeyboardAloneChoosesNothing) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  ASSERT_FALSE(list.hasFocus());
  form.people.SetFocus();
  turn();
  ASSERT_TRUE(list.hasFocus());
  EXPECT_EQ(form.people.ListIndex(), -1);
  EXPECT_EQ(shownSelected(), 0);
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_THAT(log(), ElementsAre("click p100"));
}

}  // namespace
}  // namespace kelvaron::testing
