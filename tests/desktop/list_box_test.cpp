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

struct ListDesk : Desk {
  ListDesk() : form(show<ManyControls>()), list(widget<QListView>(form, form.people)) {
    form.people.Click = [this] { note("click"); };
    form.people.DblClick = [this] { note("double"); };
    form.people.MouseUp = [this](MouseButton button) {
      note(button == MouseButton::right ? "right" : "left");
    };
    fill(40);
    turn();
    form.log.clear();
  }
  void note(const std::string& event) { form.log.push_back(event + " " + form.people.Text()); }
  void fill(int count) {
    form.people.Clear();
    for (int i = 0; i < count; ++i) form.people.AddItem(QString("p%1").arg(100 + i).toStdString());
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
  int shownSelected() const {
    return static_cast<int>(list.selectionModel()->selectedIndexes().size());
  }

  ManyControls& form;
  QListView& list;
};

TEST(ListBoxes, OneResetATurnAndNothingIsLost) {
  ListDesk desk;
  desk.click(3);
  desk.click(5, Qt::LeftButton, Qt::ControlModifier);
  desk.list.verticalScrollBar()->setValue(7);
  QSignalSpy resets(desk.list.model(), &QAbstractItemModel::modelReset);
  for (int i = 0; i < 20; ++i) desk.fill(50 + i);
  EXPECT_EQ(resets.size(), 0);
  Desk::turn();
  EXPECT_EQ(resets.size(), 1);
  EXPECT_EQ(desk.list.model()->rowCount(), 69);
  EXPECT_EQ(desk.shownSelected(), 2);
  EXPECT_THAT(desk.selected(), ElementsAre(3, 5));
  EXPECT_EQ(desk.list.currentIndex().row(), 5);
  EXPECT_EQ(desk.list.verticalScrollBar()->value(), 7);

  desk.fill(69);  // the same again
  Desk::turn();
  EXPECT_EQ(resets.size(), 1);
}

TEST(ListBoxes, SelectingByMouseAndKeyboard) {
  ListDesk desk;
  desk.click(2);
  EXPECT_THAT(desk.selected(), ElementsAre(2));
  desk.click(4, Qt::LeftButton, Qt::ShiftModifier);
  EXPECT_THAT(desk.selected(), ElementsAre(2, 3, 4));
  EXPECT_EQ(desk.form.people.Text(), "p104");
  desk.click(3, Qt::LeftButton, Qt::ControlModifier);
  EXPECT_THAT(desk.selected(), ElementsAre(2, 4));
  desk.click(1);
  EXPECT_THAT(desk.selected(), ElementsAre(1));
  desk.form.log.clear();
  QTest::keyClick(&desk.list, Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_THAT(desk.selected(), ElementsAre(1, 2));
  EXPECT_THAT(desk.form.log, ElementsAre("click p102"));

  QTest::mousePress(desk.list.viewport(), Qt::LeftButton, {}, desk.at(0));
  for (const int row : {1, 2, 3}) {
    QMouseEvent drag(QEvent::MouseMove, desk.at(row),
                     desk.list.viewport()->mapToGlobal(desk.at(row)), Qt::NoButton, Qt::LeftButton,
                     {});
    QApplication::sendEvent(desk.list.viewport(), &drag);
  }
  QTest::mouseRelease(desk.list.viewport(), Qt::LeftButton, {}, desk.at(3));
  EXPECT_THAT(desk.selected(), ElementsAre(0, 1, 2, 3));
}

TEST(ListBoxes, EventsOfTheButtons) {
  ListDesk desk;
  desk.click(2);
  EXPECT_THAT(desk.form.log, ElementsAre("click p102", "left p102"));
  desk.form.log.clear();
  desk.click(5, Qt::RightButton);
  EXPECT_THAT(desk.form.log, ElementsAre("right p102"));
  EXPECT_THAT(desk.selected(), ElementsAre(2));
  desk.form.log.clear();
  QContextMenuEvent menuKey(QContextMenuEvent::Keyboard, QPoint(), QPoint());
  QApplication::sendEvent(&desk.list, &menuKey);
  QTest::mouseDClick(desk.list.viewport(), Qt::LeftButton, {}, desk.at(2));
  QTest::keyClick(&desk.list, Qt::Key_Return);
  EXPECT_THAT(desk.form.log, ElementsAre("right p102", "double p102", "double p102"));
}

TEST(ListBoxes, ClickBeforeARebuildIsShown) {
  ListDesk desk;
  const QPoint second = desk.at(1);
  desk.form.people.AddItem("a first");  // moves every entry down, in the next turn
  QTest::mouseClick(desk.list.viewport(), Qt::LeftButton, {}, second);
  EXPECT_EQ(desk.form.people.Text(), "p100");
  desk.form.people.setListIndex(desk.form.people.ListCount() - 1);
  Desk::turn();
  EXPECT_TRUE(
      desk.list.viewport()->rect().intersects(desk.list.visualRect(desk.list.currentIndex())));
}

TEST(ListBoxes, TheKeyboardAloneChoosesNothing) {
  ListDesk desk;
  ASSERT_TRUE(QTest::qWaitForWindowActive(desk.frame(desk.form)));
  desk.form.name.SetFocus();
  Desk::turn();
  desk.form.people.SetFocus();
  Desk::turn();
  ASSERT_TRUE(desk.list.hasFocus());
  EXPECT_EQ(desk.form.people.ListIndex(), -1);
  EXPECT_EQ(desk.shownSelected(), 0);
  QTest::keyClick(&desk.list, Qt::Key_Down);
  EXPECT_EQ(desk.form.people.Text(), "p100");
  EXPECT_THAT(desk.form.log, ElementsAre("click p100"));
}

}  // namespace
}  // namespace kelvaron::testing
