// Windows: how they come, go and end, what they hear of the mouse, and their colours.
#include <gmock/gmock.h>

#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QScrollArea>
#include <algorithm>
#include <cmath>

#include "base/scope_exit.h"
#include "chat/main_window.h"
#include "desktop/qt_values.h"
#include "desktop/shell/theme.h"
#include "desktop/shell/theme_drawing.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::Pair;

class Windows : public ::testing::Test, protected Desk {};

TEST_F(Windows, UnloadFromOwnHandlerOrWhileItsBoxIsOpen) {
  for (const bool fromHandler : {true, false}) {
    auto& form = show<Plain>();
    const QPointer<QWidget> window = frame(form);
    form.button.Click = [&] {
      if (fromHandler) client->slots.unload(form);
      EXPECT_NE(window->isVisible(), fromHandler);
      client->MsgBox("still here");
      EXPECT_FALSE(window.isNull()) << "its button is on the stack";
    };
    whenBoxOpens([&](QWidget& box) {
      if (!fromHandler) edge.run([&] { client->slots.unload(form); });
      turn();
      EXPECT_TRUE(box.isVisible());
      QTest::keyClick(&box, Qt::Key_Escape);
    });
    widget<QPushButton>(form, form.button).click();
    EXPECT_EQ(client->loadedForm<Plain>(), nullptr);
    turn();
    EXPECT_TRUE(window.isNull());
  }
}

TEST_F(Windows, CloseButton) {
  for (const bool closable : {true, false}) {
    auto& form = client->form<Plain>();
    form.ControlBox = closable;
    show<Plain>();
    EXPECT_EQ(frame(form)->windowFlags().testFlag(Qt::WindowCloseButtonHint), closable);
    frame(form)->close();
    EXPECT_EQ(client->loadedForm<Plain>() == nullptr, closable);
  }
}

TEST_F(Windows, EscapeDoesNothingWhileTheCancelButtonIsDisabled) {
  auto& form = client->form<Plain>();
  form.button.Cancel = true;
  form.button.Click = [&] { client->slots.unload(form); };
  show<Plain>();
  for (const bool enabled : {false, true}) {
    form.button.Enabled = enabled;
    QTest::keyClick(frame(form), Qt::Key_Escape);
    EXPECT_EQ(client->loadedForm<Plain>() == nullptr, enabled);
  }
}

TEST_F(Windows, TitleIsTheCaption) {
  auto& form = show<Plain>();
  for (const char* caption : {"a [*] b", "[*]", "[*][*]"}) {
    form.Caption = caption;
    turn();
    EXPECT_EQ(frame(form)->windowHandle()->title(), caption);
  }
}

TEST_F(Windows, SizeAndResize) {
  auto& fixed = show<Plain>();
  EXPECT_THAT(fixed.sizes, ElementsAre(Pair(3000, 1500)));
  frame(fixed)->resize(500, 500);
  turn();
  EXPECT_EQ(frame(fixed)->size(), QSize(200, 100));
  client->slots.unload(fixed);

  auto& form = client->form<Plain>();
  form.Sizable = true;
  show<Plain>();
  ASSERT_TRUE(QTest::qWaitForWindowActive(frame(form)));
  frame(form)->resize(300, 120);
  turn();
  EXPECT_THAT(form.sizes, ElementsAre(Pair(3000, 1500), Pair(4500, 1800)));
  form.ScaleWidth = 3150;
  EXPECT_TRUE(QTest::qWaitFor([&] { return frame(form)->size() == QSize(210, 120); }, 1000));
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

TEST_F(Windows, AsLargeAsTheScreenHasRoomFor) {
  const QSize screen = QGuiApplication::primaryScreen()->availableSize();
  setFormScale(2);
  const ScopeExit usual([] { setFormScale(1); });
  // Of the screen's height the design takes so many hundredths; text and factor follow.
  using Case = std::tuple<int, qreal, bool>;
  for (const auto& [share, scale, scrolls] :
       {Case{20, 2.0, false}, Case{60, 1.5, false}, Case{120, 1.0, true}}) {
    auto& form = client->form<Plain>();
    const int height = screen.height() * share / 100;
    form.ScaleHeight = height * kTwipsPerPixel;
    form.button.Top = (height - 40) * kTwipsPerPixel;
    show<Plain>();
    const QWidget& window = *frame(form);
    const auto& button = widget<QPushButton>(form, form.button);
    EXPECT_EQ(button.width(), qRound(80 * scale)) << share;
    EXPECT_EQ(window.findChild<QScrollArea*>() != nullptr, scrolls) << share;
    EXPECT_EQ(button.visibleRegion().boundingRect(), button.rect()) << share;
    client->slots.unload(form);
  }
}

/// Wider than the screen and higher, with a sentence in front of its button.
class TooLarge : public Form {
 public:
  explicit TooLarge(Client&)
      : Form({.name = "TooLarge", .caption = "", .width = 20000, .height = 20000}) {
    sentence.WordWrap = true;
  }
  Label sentence{*this, "sentence", {300, 19100, 14000, 600}, "Why this form can't go on as it is"};
  CommandButton button{*this, "button", {15000, 19250, 4500, 450}, "Go"};
};

TEST_F(Windows, TheLowestRowOfAFormThatScrolls) {
  auto& form = show<TooLarge>();
  const QRect inside = frame(form)->rect();
  const auto place = [&](const Control& control) {
    const QWidget& shown = widget(form, control);
    EXPECT_TRUE(shown.isVisible());
    return QRect(shown.mapTo(frame(form), QPoint()), shown.size());
  };
  const QRect button = place(form.button);
  EXPECT_EQ(inside.right() - button.right(), (20000 - 15000 - 4500) / kTwipsPerPixel);
  const QRect sentence = place(form.sentence);
  EXPECT_EQ(sentence.left(), 300 / kTwipsPerPixel);
  EXPECT_LT(sentence.right(), button.left());
  EXPECT_LE(sentence.bottom(), inside.bottom());
}

TEST_F(Windows, TheRoomsHeadKeepsItsOrder) {
  auto& room = show<frmMain>();
  room.Label1.Caption = "bob";
  room.Label6.Caption = "Oregon";
  using Case = std::tuple<QSize, bool, bool>;  // the logo and the server's line are there
  for (const auto& [size, logo, server] :
       {Case{{960, 656}, true, true}, Case{{960, 420}, true, true}, Case{{640, 420}, true, true},
        Case{{384, 300}, false, false}, Case{{384, 700}, false, true},
        Case{{960, 656}, true, true}}) {
    frame(room)->resize(size);
    QTest::qWait(20);
    const auto place = [&](Label& label) { return widget<QLabel>(room, label).geometry(); };
    const QWidget& picture = widget(room, room.Image1);
    EXPECT_LE(picture.width() * 48, (picture.height() + 1) * 300) << "its picture is indented";
    std::vector<QRect> places = {picture.geometry(), place(room.Label3), place(room.Label2),
                                 place(room.Label1), place(room.Label5), place(room.Label6),
                                 place(room.Label4), place(room.Label7)};
    EXPECT_EQ(places[0].isEmpty(), !logo) << size.width();
    EXPECT_EQ(places[5].isEmpty(), !server) << size.width();
    for (auto one = places.begin(); one != places.end(); ++one) {
      for (auto other = one + 1; other != places.end(); ++other) {
        EXPECT_FALSE(one->intersects(*other)) << size.width();
      }
    }
    for (Label* label : {&room.Label3, &room.Label2, &room.Label1, &room.Label7}) {
      EXPECT_EQ(widget<QLabel>(room, *label).text().toStdString(), label->Caption.get());
    }
  }
}

TEST_F(Windows, KeyboardGoesWhereItIsWanted) {
  auto& form = client->form<ManyControls>();
  form.secret.SetFocus();
  show<ManyControls>();
  EXPECT_EQ(frame(form)->focusWidget(), &widget(form, form.secret));
  auto& plain = show<Plain>();
  EXPECT_EQ(frame(plain)->focusWidget(), &widget(plain, plain.button));
}

TEST_F(Windows, WhatComesByItselfLeavesTheKeyboard) {
  QWidget* typedIn = frame(show<ManyControls>());
  // What brings a form, and whether that one is active then: a new one, and one that was open.
  using Row = std::tuple<const char*, std::function<void(Form&)>, bool, bool>;
  for (const auto& [what, bring, comesActive, activates] :
       {Row{"network", [&](Form& form) { edge.runUnasked([&] { form.Visible = true; }); }, false,
            false},
        Row{"user", [&](Form& form) { gate.run([&] { form.Visible = true; }); }, true, false},
        Row{"to the front", [&](Form& form) { edge.runUnasked([&] { form.Show(); }); }, true,
            false},
        Row{"by the user", [&](Form& form) { gate.run([&] { form.Show(); }); }, true, true},
        Row{"by itself", [&](Form& form) { edge.runUnasked([&] { form.ShowQuietly(); }); }, false,
            false},
        Row{"quietly", [&](Form& form) { gate.run([&] { form.ShowQuietly(); }); }, false, false}}) {
    SCOPED_TRACE(what);
    typedIn->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(typedIn));
    auto& form = client->form<Plain>();
    bring(form);
    QTest::qWait(50);
    const QWidget& window = *frame(form);
    const auto isActive = [&] { return window.isActiveWindow(); };
    ASSERT_TRUE(window.isVisible());
    EXPECT_NE(window.testAttribute(Qt::WA_ShowWithoutActivating), comesActive);
    if (QGuiApplication::platformName() != "offscreen") {  // which activates whatever is shown
      EXPECT_EQ(QTest::qWaitFor(isActive, 300), comesActive);
    }
    typedIn->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(typedIn));
    for (int i = 0; i < 50; ++i) {
      bring(form);
      turn();
    }
    EXPECT_EQ(QTest::qWaitFor(isActive, 50), activates);
    client->slots.unload(form);
  }
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

class Pointer : public FormTest<ManyControls> {
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
  std::vector<std::string> log() { return std::exchange(form.mouse, {}); }

  QWidget& surface = *widgetOf(form.nameLabel).parentWidget();
};

TEST_F(Pointer, WhoHearsOfIt) {
  using Heard = std::vector<std::string>;
  const Heard formMoved = {"moved"};
  using Row = std::tuple<const Control*, Heard, Heard>;
  form.secret.Enabled = false;
  turn();
  for (const auto& [control, moved, clicked] :
       {Row{nullptr, formMoved, {"clicked"}}, Row{&form.nameLabel, formMoved, {"clicked"}},
        Row{&form.name, formMoved, {}}, Row{&form.secret, formMoved, {}},
        Row{&form.people, formMoved, {}}, Row{&form.frame, formMoved, {}},
        Row{&form.inFrame, formMoved, {}}, Row{&form.silent, formMoved, {}},
        Row{&form.logo, {"logo moved"}, {"logo clicked"}}}) {
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
  move(&form.logo);
  move(nullptr);
  turn();
  EXPECT_THAT(log(), ElementsAre("moved"));
}

TEST_F(Pointer, AClickBeginsAndEndsInOnePlace) {
  QTest::mousePress(&surface, Qt::LeftButton, {}, in(surface));
  QTest::mouseRelease(&over(&form.nameLabel), Qt::LeftButton);
  EXPECT_THAT(log(), ElementsAre());
}

TEST_F(Pointer, MovesOfAFormThatGoesAreForgotten) {
  move(nullptr);
  client->slots.unload(form);
  turn();
  EXPECT_EQ(client->loadedForm<ManyControls>(), nullptr);
}

TEST_F(Pointer, Shapes) {
  using Row = std::pair<MousePointer, Qt::CursorShape>;
  for (const auto& [pointer, shape] : {Row{MousePointer::noDrop, Qt::ForbiddenCursor},
                                       Row{MousePointer::hourglass, Qt::WaitCursor},
                                       Row{MousePointer::standard, Qt::ArrowCursor}}) {
    form.MousePointer_ = pointer;
    turn();
    EXPECT_EQ(surface.cursor().shape(), shape);
    EXPECT_EQ(over(&form.nameLabel).cursor().shape(), shape);
    EXPECT_EQ(over(&form.logo).cursor().shape(), Qt::PointingHandCursor);
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
       {Case{"border on the lightest ground", kLine, kMenu, 3},
        Case{"scroll handle on a field", kHandle, kField, 3},
        Case{"held handle", kHandleHeld, kField, 3},
        Case{"unlit lamp", toQt(Shape::kUnlit), kWindow, 3}, Case{"focus", kAccent, kWindow, 3},
        Case{"text on the lightest ground", kText, kButton, 7},
        Case{"selected text", Qt::white, kSelection, 4.5},
        Case{"what is switched off", kDisabledText, kWindow, 4.5}}) {
    EXPECT_GE(contrast(front, ground), least) << what;
  }
}

}  // namespace
}  // namespace kelvaron::testing
