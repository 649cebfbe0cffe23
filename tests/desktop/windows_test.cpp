// Windows come, go and end, from within their own handlers too; what they hear of the mouse, and
// the theme's contrasts.
#include <gmock/gmock.h>

#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "desktop/qt_values.h"
#include "desktop/shell/theme.h"
#include "desktop/shell/theme_drawing.h"
#include "platform/shape.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

class Windows : public ::testing::Test, protected Desk {
 protected:
  void press(Plain& form) { widget<QPushButton>(form, form.button).click(); }
};

TEST_F(Windows, UnloadFromOwnHandler) {
  auto& form = show<Plain>();
  const QPointer<QWidget> window = frame(form);
  form.button.Click = [&] {
    client->slots.unload(form);
    EXPECT_FALSE(window->isVisible());
    client->MsgBox("still here");
    EXPECT_FALSE(window.isNull()) << "its button is on the stack";
  };
  whenBoxOpens([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  press(form);
  EXPECT_EQ(client->loadedForm<Plain>(), nullptr);
  turn();
  EXPECT_TRUE(window.isNull());
  EXPECT_TRUE(frame(show<Plain>())->isVisible());
}

TEST_F(Windows, UnloadWhileItsOwnBoxIsOpen) {
  auto& form = show<Plain>();
  const QPointer<QWidget> window = frame(form);
  form.button.Click = [&] { client->MsgBox("asked from the window"); };
  whenBoxOpens([&](QWidget& box) {
    edge.run([&] { client->slots.unload(form); });
    turn();
    EXPECT_TRUE(box.isVisible());
    EXPECT_FALSE(window.isNull());
    QTest::keyClick(&box, Qt::Key_Return);
  });
  press(form);
  turn();
  EXPECT_TRUE(window.isNull());
}

TEST_F(Windows, CloseButton) {
  for (const bool closable : {true, false}) {
    Plain::unloads = 0;
    auto& form = client->form<Plain>();
    form.ControlBox = closable;
    show<Plain>();
    EXPECT_EQ(frame(form)->windowFlags().testFlag(Qt::WindowCloseButtonHint), closable);
    frame(form)->close();
    EXPECT_EQ(Plain::unloads, closable ? 1 : 0);
    EXPECT_EQ(client->loadedForm<Plain>() == nullptr, closable);
  }
}

TEST_F(Windows, SizeAndResize) {
  auto& fixed = show<Plain>();
  EXPECT_THAT(fixed.sizes, ElementsAre(Pair(3000, 1500)));
  EXPECT_EQ(frame(fixed)->size(), QSize(200, 100));
  frame(fixed)->resize(500, 500);
  turn();
  EXPECT_EQ(frame(fixed)->size(), QSize(200, 100));
  client->slots.unload(fixed);

  auto& form = client->form<Plain>();
  form.Sizable = true;
  show<Plain>();
  frame(form)->resize(300, 120);
  turn();
  EXPECT_THAT(form.sizes, ElementsAre(Pair(3000, 1500), Pair(4500, 1800)));
  form.ScaleWidth = 3150;
  turn();
  EXPECT_EQ(frame(form)->size(), QSize(210, 120));
}

TEST_F(Windows, LargerThanTheScreen) {
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  for (const bool sizable : {false, true}) {
    auto& form = client->form<Plain>();
    form.Sizable = sizable;
    form.ScaleWidth = toTwips(screen.width() + 400);
    form.ScaleHeight = toTwips(screen.height() + 400);
    show<Plain>();
    const QWidget& window = *frame(form);
    EXPECT_EQ(window.size(), window.size().boundedTo(screen));
    EXPECT_GT(window.width(), screen.width() * 3 / 4);
    EXPECT_GT(window.height(), screen.height() * 3 / 4);
    EXPECT_EQ(window.findChild<QScrollArea*>() == nullptr, sizable);
    // The design's own size comes first, so that a layout measured there fits afterwards.
    EXPECT_EQ(form.sizes.front().first, toTwips(screen.width() + 400));
    EXPECT_EQ(form.sizes.size(), sizable ? 2U : 1U);
    client->slots.unload(form);
  }
}

TEST_F(Windows, KeyboardGoesWhereItIsWanted) {
  auto& form = client->form<ManyControls>();
  form.secret.SetFocus();
  show<ManyControls>();
  EXPECT_EQ(frame(form)->focusWidget(), &widget(form, form.secret));
  form.tick.SetFocus();
  turn();
  EXPECT_EQ(frame(form)->focusWidget(), &widget(form, form.tick));

  auto& plain = show<Plain>();
  EXPECT_EQ(frame(plain)->focusWidget(), &widget(plain, plain.button));
}

TEST_F(Windows, WhatComesByItselfLeavesTheKeyboard) {
  QWidget* typedIn = frame(show<ManyControls>());
  ASSERT_TRUE(QTest::qWaitForWindowActive(typedIn));
  using Row = std::tuple<const char*, std::function<void(Form&)>, bool>;
  for (const auto& [what, bring, activates] :
       {Row{"from the network", [&](Form& form) { edge.run([&] { form.Visible = true; }); }, false},
        Row{"for the user", [&](Form& form) { gate.run([&] { form.Visible = true; }); }, true},
        Row{"to the front", [&](Form& form) { edge.run([&] { form.Show(); }); }, true},
        Row{"quietly", [&](Form& form) { gate.run([&] { form.ShowQuietly(); }); }, false}}) {
    SCOPED_TRACE(what);
    auto& form = client->form<Plain>();
    bring(form);
    QTest::qWait(50);
    const QWidget& window = *frame(form);
    ASSERT_TRUE(window.isVisible());
    EXPECT_NE(window.testAttribute(Qt::WA_ShowWithoutActivating), activates);
    if (QGuiApplication::platformName() != "offscreen") {  // which activates whatever is shown
      EXPECT_TRUE(QTest::qWaitFor(
          [&, wanted = activates] { return window.isActiveWindow() == wanted; }, 1000));
    }
    client->slots.unload(form);
    typedIn->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(typedIn));
  }
}

TEST_F(Windows, ShowOfAnOpenFormLeavesTheKeyboardUnlessAskedFor) {
  auto& open = show<Plain>();
  QWidget* typedIn = frame(show<ManyControls>());
  ASSERT_TRUE(QTest::qWaitForWindowActive(typedIn));
  for (int i = 0; i < 50; ++i) {
    edge.run([&] {
      open.Show();
      open.ShowQuietly();
    });
    turn();
    ASSERT_TRUE(typedIn->isActiveWindow()) << i;
  }
  gate.run([&] { open.ShowQuietly(); });
  QTest::qWait(50);
  EXPECT_TRUE(typedIn->isActiveWindow());
  gate.run([&] { open.Show(); });
  EXPECT_TRUE(QTest::qWaitForWindowActive(frame(open)));
}

TEST_F(Windows, DisabledTextLooksSo) {
  auto& form = show<ManyControls>();
  form.ForeColor = Color{1, 2, 3};
  form.name.ForeColor = Color{1, 2, 3};
  turn();
  using Row = std::pair<Control&, QPalette::ColorRole>;
  for (const auto& [control, role] :
       {Row{form.name, QPalette::Text}, Row{form.tick, QPalette::WindowText}}) {
    const QWidget& shown = widget(form, control);
    EXPECT_EQ(shown.palette().color(role), QColor(1, 2, 3)) << control.Name;
    control.Enabled = false;
    turn();
    EXPECT_EQ(shown.palette().color(role), darkPalette().color(QPalette::Disabled, role))
        << control.Name;
  }
}

class Surface : public Form {
 public:
  explicit Surface(Client&)
      : Form({.name = "Surface", .caption = "Surface", .width = 6000, .height = 4500}) {
    off.Enabled = false;
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

class Pointer : public FormTest<Surface> {
 protected:
  /// The widget that a real mouse would find over the middle of a control; without one, the form's.
  QWidget& over(const Control* control) const {
    if (control == nullptr) return surface;
    QWidget& whole = widgetOf(*control);
    QWidget* part = whole.childAt(whole.rect().center());
    return part == nullptr ? whole : *part;
  }
  QPoint in(const QWidget& at) const {
    return &at == &surface ? QPoint(350, 250) : at.rect().center();
  }
  void move(const Control* control) const {
    QWidget& to = over(control);
    QMouseEvent event(QEvent::MouseMove, in(to), to.mapToGlobal(in(to)), Qt::NoButton, Qt::NoButton,
                      {});
    QApplication::sendEvent(&to, &event);
  }
  /// What was heard since the last call.
  std::vector<std::string> log() { return std::exchange(form.log, {}); }

  QWidget& surface = *widgetOf(form.label).parentWidget();
};

TEST_F(Pointer, WhoHearsOfIt) {
  using Heard = std::vector<std::string>;
  const Heard formMoved = {"moved"};
  using Row = std::tuple<const Control*, Heard, Heard>;
  for (const auto& [control, moved, clicked] :
       {Row{nullptr, formMoved, {"clicked"}}, Row{&form.label, formMoved, {"clicked"}},
        Row{&form.text, formMoved, {}}, Row{&form.off, formMoved, {}},
        Row{&form.list, formMoved, {}}, Row{&form.frame, formMoved, {}},
        Row{&form.inFrame, formMoved, {}}, Row{&form.silent, formMoved, {}},
        Row{&form.heard, {"image moved"}, {"image clicked"}}}) {
    SCOPED_TRACE(control == nullptr ? "bare surface" : control->Name);
    move(control);
    move(control);
    EXPECT_EQ(log(), Heard{});
    turn();
    EXPECT_EQ(log(), moved);

    QWidget& at = over(control);
    QTest::mouseClick(&at, Qt::LeftButton, {}, in(at));
    QTest::mouseClick(&at, Qt::RightButton, {}, in(at));
    EXPECT_EQ(log(), clicked);
  }
}

TEST_F(Pointer, TheLastPlaceOfATurnCounts) {
  move(&form.heard);
  move(nullptr);
  turn();
  EXPECT_THAT(log(), ElementsAre("moved"));
  move(nullptr);
  move(&form.heard);
  turn();
  EXPECT_THAT(log(), ElementsAre("image moved"));
}

TEST_F(Pointer, AClickBeginsAndEndsInOnePlace) {
  QTest::mousePress(&surface, Qt::LeftButton, {}, in(surface));
  QTest::mouseRelease(&over(&form.label), Qt::LeftButton);
  EXPECT_THAT(log(), ElementsAre());
}

TEST_F(Pointer, MovesOfAFormThatGoesAreForgotten) {
  move(nullptr);
  client->slots.unload(form);
  turn();
  EXPECT_EQ(client->loadedForm<Surface>(), nullptr);
}

TEST_F(Pointer, Shapes) {
  using Row = std::pair<MousePointer, Qt::CursorShape>;
  for (const auto& [pointer, shape] : {Row{MousePointer::noDrop, Qt::ForbiddenCursor},
                                       Row{MousePointer::hourglass, Qt::WaitCursor},
                                       Row{MousePointer::standard, Qt::ArrowCursor}}) {
    form.MousePointer_ = pointer;
    turn();
    EXPECT_EQ(surface.cursor().shape(), shape);
    EXPECT_EQ(over(&form.label).cursor().shape(), shape);
    EXPECT_EQ(over(&form.heard).cursor().shape(), Qt::PointingHandCursor);
  }
}

double luminance(const QColor& color) {
  const auto part = [](double value) {
    return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({luminance(one), luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

// As the recommendations for accessible contents compute them.
TEST(Theme, Contrasts) {
  using namespace theme;
  using Case = std::tuple<const char*, QColor, QColor, double>;
  for (const auto& [what, front, ground, least] :
       {Case{"border of a field on the window", kLine, kWindow, 3},
        Case{"border of a field on the field", kLine, kField, 3},
        Case{"border of a menu", kLine, kMenu, 3},
        Case{"scroll handle on a field", kHandle, kField, 3},
        Case{"scroll handle in the room", kHandle, Qt::black, 3},
        Case{"held handle", kHandleHeld, kField, 3},
        Case{"unlit lamp", toQt(Shape::kUnlit), kWindow, 3}, Case{"focus", kAccent, kWindow, 3},
        Case{"text", kText, kWindow, 7}, Case{"text of a button", kText, kButton, 7},
        Case{"selected text", Qt::white, kSelection, 4.5},
        Case{"what is switched off", kDisabledText, kWindow, 4.5}}) {
    EXPECT_GE(contrast(front, ground), least) << what;
  }
}

}  // namespace
}  // namespace kelvaron::testing
