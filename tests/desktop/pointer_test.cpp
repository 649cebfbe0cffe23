// What forms and pictures hear of the mouse.
#include <gmock/gmock.h>

#include <QMouseEvent>

#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;

class Surface : public Form {
 public:
  explicit Surface(Client&)
      : Form({.name = "Surface", .caption = "Surface", .width = 6000, .height = 4500}) {
    heard.MouseMove = [this] { log.emplace_back("image moved"); };
    heard.Click = [this] { log.emplace_back("image clicked"); };
  }
  void Form_Click() override { log.emplace_back("clicked"); }
  void Form_MouseMove() override { log.emplace_back("moved"); }

  std::vector<std::string> log;
  Label label{*this, "label", {150, 150, 1500, 300}, "Label"};
  TextBox text{*this, "text", {150, 600, 1500, 375}};
  TextBox off{*this, "off", {150, 1050, 1500, 375}};
  Image heard{*this, "heard", {1800, 150, 900, 900}, "logo"};
  Image silent{*this, "silent", {2850, 150, 900, 900}, "logo"};
  ListBox list{*this, "list", {150, 1800, 1500, 900}, true, ListBox::Selection::one};
  Frame frame{*this, "frame", {1800, 1800, 1500, 900}, "Frame"};
  Label inFrame{frame, "inFrame", {150, 300, 400, 300}, "In"};
};

struct PointerDesk : Desk {
  PointerDesk() : form(client->form<Surface>()) {
    form.off.Enabled = false;
    show<Surface>();
    surface = widget(form, form.label).parentWidget();
  }
  /// The widget that a real mouse would find over the middle of a control.
  QWidget* over(const Control* control) const {
    if (control == nullptr) return surface;
    QWidget& whole = widget(form, *control);
    QWidget* part = whole.childAt(whole.rect().center());
    return part == nullptr ? &whole : part;
  }
  QPoint in(const QWidget& at) const {
    return &at == surface ? QPoint(350, 250) : at.rect().center();
  }
  void move(const Control* control) const {
    QWidget& to = *over(control);
    QMouseEvent event(QEvent::MouseMove, in(to), to.mapToGlobal(in(to)), Qt::NoButton, Qt::NoButton,
                      {});
    QApplication::sendEvent(&to, &event);
  }

  Surface& form;
  QWidget* surface = nullptr;
};

TEST(Pointer, WhoHearsOfIt) {
  PointerDesk desk;
  const Surface& form = desk.form;
  struct Row {
    const char* where;
    const Control* control;
    std::vector<std::string> moved;
    std::vector<std::string> clicked;
  };
  const std::vector<std::string> formMoved = {"moved"};
  const Row rows[] = {
      {"bare surface", nullptr, formMoved, {"clicked"}},
      {"label", &form.label, formMoved, {"clicked"}},
      {"text box", &form.text, formMoved, {}},
      {"disabled text box", &form.off, formMoved, {}},
      {"list", &form.list, formMoved, {}},
      {"frame", &form.frame, formMoved, {}},
      {"label in the frame", &form.inFrame, formMoved, {}},
      {"image with handlers", &form.heard, {"image moved"}, {"image clicked"}},
      {"image without", &form.silent, formMoved, {}},
  };
  for (const Row& row : rows) {
    desk.form.log.clear();
    desk.move(row.control);
    desk.move(row.control);
    EXPECT_TRUE(form.log.empty()) << row.where;
    Desk::turn();
    EXPECT_EQ(form.log, row.moved) << row.where;

    desk.form.log.clear();
    QWidget& at = *desk.over(row.control);
    QTest::mouseClick(&at, Qt::LeftButton, {}, desk.in(at));
    QTest::mouseClick(&at, Qt::RightButton, {}, desk.in(at));
    EXPECT_EQ(form.log, row.clicked) << row.where;
  }
}

TEST(Pointer, TheLastPlaceOfATurnCounts) {
  PointerDesk desk;
  desk.move(&desk.form.heard);
  desk.move(nullptr);
  Desk::turn();
  EXPECT_THAT(desk.form.log, ElementsAre("moved"));
  desk.move(nullptr);
  desk.move(&desk.form.heard);
  Desk::turn();
  EXPECT_THAT(desk.form.log, ElementsAre("moved", "image moved"));
}

TEST(Pointer, AClickBeginsAndEndsInOnePlace) {
  PointerDesk desk;
  QWidget& label = *desk.over(&desk.form.label);
  QTest::mousePress(desk.surface, Qt::LeftButton, {}, QPoint(350, 250));
  QTest::mouseRelease(&label, Qt::LeftButton);
  EXPECT_TRUE(desk.form.log.empty());
}

TEST(Pointer, MovesOfAFormThatGoesAreForgotten) {
  PointerDesk desk;
  desk.move(nullptr);
  desk.client->slots.unload(desk.form);
  Desk::turn();
  EXPECT_EQ(desk.client->loadedForm<Surface>(), nullptr);
}

TEST(Pointer, Shapes) {
  PointerDesk desk;
  const std::pair<MousePointer, Qt::CursorShape> rows[] = {
      {MousePointer::noDrop, Qt::ForbiddenCursor},
      {MousePointer::hourglass, Qt::WaitCursor},
      {MousePointer::standard, Qt::ArrowCursor},
  };
  for (const auto& [pointer, shape] : rows) {
    desk.form.MousePointer_ = pointer;
    Desk::turn();
    EXPECT_EQ(desk.surface->cursor().shape(), shape);
    EXPECT_EQ(desk.over(&desk.form.label)->cursor().shape(), shape);
    EXPECT_EQ(desk.over(&desk.form.heard)->cursor().shape(), Qt::PointingHandCursor);
  }
}

}  // namespace
}  // namespace kelvaron::testing
