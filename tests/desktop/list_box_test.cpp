// The list box on the screen: rebuilds, selection, and what each button and key raises.
#include <gmock/gmock.h>

#include <QAbstractItemModel>
#include <QContextMenuEvent>
#include <QListView>
#include <QScrollBar>
#include <QSignalSpy>

#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

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
  EXPECT_THAT(selected(), ElementsAre(2));
  click(4, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_THAT(selected(), ElementsAre(2, 3, 4));
  EXPECT_EQ(form.people.Text(), "p104");
  click(3, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_THAT(selected(), ElementsAre(2, 4));
  click(1);
  EXPECT_THAT(selected(), ElementsAre(1));
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

TEST_F(ListBoxes, TheKeyboardAloneChoosesNothing) {
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window()));
  form.name.SetFocus();
  turn();
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
