// The room on the real shell.
#pragma once

#include "chat/main_window.h"
#include "tests/desktop/desk.h"

namespace kelvaron::testing {

class RoomDesk : public Desk {
 public:
  RoomDesk() {
    room().Show();
    turn();
  }

  frmMain& room() { return client->form<frmMain>(); }
  FormFrame& frame() { return *shell.shown(room())->frame(); }
  QWidget& widgetOf(const Control& control) {
    return shell.shown(room())->viewOf(control)->widget();
  }
};

}  // namespace kelvaron::testing
