// A client on the real shell for tests, and a form with controls of every kind.
#pragma once

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "client/kelvaron_client.h"
#include "desktop/ports/dialogs.h"
#include "desktop/ports/qt_event_loop.h"
#include "desktop/shell/shell.h"
#include "platform/combo_box.h"
#include "platform/list_box.h"
#include "platform/menu.h"
#include "platform/progress_bar.h"
#include "platform/shape.h"
#include "platform/slider.h"
#include "tests/support/idle_ports.h"
#include "tests/support/test_desktop.h"

namespace kelvaron::testing {

class ManyControls : public Form {
 public:
  explicit ManyControls(Client&)
      : Form({.name = "ManyControls", .caption = "Many", .width = 9000, .height = 4500}) {
    area.MultiLine = true;
    area.AccessibleName = "Notes";
    people.AccessibleName = "People";
    secret.PasswordChar = '*';
    ok.Click = [this] { log.emplace_back("ok"); };
    cancel.Click = [this] { log.emplace_back("cancel"); };
    go.Click = [this] { log.emplace_back("go"); };
    for (const char* entry : {"doom.wad", "doom2.wad", "plutonia.wad"}) combo.AddItem(entry);
    named.AccessibleName = "Named";
    lamp.AccessibleName = "Ready";
    logo.MouseMove = [this] { mouse.emplace_back("logo moved"); };
    logo.Click = [this] { mouse.emplace_back("logo clicked"); };
  }
  void Form_Click() override { mouse.emplace_back("clicked"); }
  void Form_MouseMove() override { mouse.emplace_back("moved"); }

  std::vector<std::string> log;
  std::vector<std::string> mouse;

  Label nameLabel{*this, "nameLabel", {150, 150, 1200, 300}, "&Name:"};
  TextBox name{*this, "name", {1500, 150, 3000, 375}};
  TextBox area{*this, "area", {1500, 600, 3000, 900}};
  TextBox secret{*this, "secret", {1500, 1550, 3000, 375}};
  Frame frame{*this, "frame", {150, 2000, 2400, 900}, "Group"};
  CheckBox tick{frame, "tick", {150, 300, 900, 330}, "Tick"};
  ListBox people{*this, "people", {2700, 2000, 1800, 900}, true, ListBox::Selection::several};
  CommandButton ok{*this, "ok", {150, 3000, 1200, 450}, "Fine"};
  CommandButton cancel{*this, "cancel", {1500, 3000, 1200, 450}, "Away"};
  Label fileLabel{*this, "fileLabel", {4800, 150, 900, 300}, "&File:"};
  ComboBox combo{*this, "combo", {5700, 150, 3000, 375}};
  ComboBox named{*this, "named", {5700, 600, 3000, 375}};
  Shape lamp{*this, "lamp", {4800, 1050, 360, 360}};
  Slider slider{*this, "slider", {5700, 1050, 3000, 375}, 0, 100, 30};
  ProgressBar bar{*this, "bar", {5700, 1550, 3000, 300}};
  Image logo{*this, "logo", {4800, 2000, 900, 900}, "logo"};
  Image silent{*this, "silent", {5850, 2000, 900, 900}, "logo"};
  Label inFrame{frame, "inFrame", {150, 630, 400, 240}, "In"};
  Timer timer{*this, "timer", 5, false};
  MenuItem file{*this, "file", "File"};
  MenuItem go{file, "go", "Go"};
  MenuItem line{file, "line", "-"};
  MenuItem greyed{file, "greyed", "Later", MenuItem::State::greyed};
  MenuItem popUp{*this, "popUp", "Pop", MenuItem::State::hidden};
  MenuItem popped{popUp, "popped", "Popped"};
};

/// A second form; what it is like is set before it is shown.
class Plain : public Form {
 public:
  explicit Plain(Client&)
      : Form({.name = "Plain", .caption = "Plain", .width = 3000, .height = 1500}) {}
  void Form_Resize() override { sizes.emplace_back(ScaleWidth.get(), ScaleHeight.get()); }

  std::vector<std::pair<int, int>> sizes;
  CommandButton button{*this, "button", {150, 150, 1200, 450}, "Press"};
};

/// A client on the real shell, with the windows of its forms.
class Desk {
 public:
  Desk() : client(makeClient(edge, ports.with(sockets, dialogs))), shell(*client, gate) {}

  template <class F>
  F& show() {
    F& form = client->form<F>();
    form.Show();
    turn();
    return form;
  }
  /// Lets the event loop turn until nothing waits.
  static void turn() { QTest::qWait(1); }

  QWidget* frame(const Form& form) const {
    const ShownForm* shown = shell.shown(form);
    return shown == nullptr ? nullptr : shown->frame();
  }
  template <class Widget = QWidget>
  Widget& widget(const Form& form, const Control& control) const {
    return dynamic_cast<Widget&>(shell.shown(form)->viewOf(control)->widget());
  }

  /// What a screen reader hears of a widget.
  static QString told(QWidget& widget, QAccessible::Text kind = QAccessible::Name) {
    return QAccessible::queryAccessibleInterface(&widget)->text(kind);
  }
  /// Runs `act` with the next modal dialog, once it is open.
  static void whenBoxOpens(std::function<void(QWidget&)> act) {
    QTimer::singleShot(20, [act = std::move(act)] {
      QWidget* box = QApplication::activeModalWidget();
      ASSERT_NE(box, nullptr) << "no box is open";
      act(*box);
    });
  }

  Edge edge;
  EventGate gate{edge};
  QtEventLoop loop;
  RoutedSocketPort sockets{loop, 0};
  QtDialogs dialogs{gate};
  IdlePorts ports{loop};
  std::unique_ptr<Client> client;
  Shell shell;
};

/// A desk with one form of a kind on the screen.
template <class F>
class FormTest : public ::testing::Test, protected Desk {
 protected:
  QWidget& window() const { return *frame(form); }
  template <class Widget = QWidget>
  Widget& widgetOf(const Control& control) const {
    return widget<Widget>(form, control);
  }

  F& form = show<F>();
};

}  // namespace kelvaron::testing
