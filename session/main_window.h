// What the session needs of the main window `frmMain`; chat/ builds it.
#pragma once

#include "platform/controls.h"
#include "platform/list_box.h"

namespace kelvaron {

class MainWindow : public Form {
 public:
  using Form::Form;

  /// `Label1`: the user's nickname as shown, with "¥" in front after a moderator grant.
  virtual Label& shownName() = 0;
  /// `Label6`: the location of the chosen server.
  virtual Label& serverLocation() = 0;
  /// `txtOutput`: the chat view.
  virtual RichTextBox& output() = 0;
  /// `List1`: the users.
  virtual ListBox& users() = 0;
  /// Whether there is a connection, once that changes.
  virtual void showConnected(bool connected) = 0;
  /// The radio can't play what was opened.
  virtual void radioFailed() = 0;
};

}  // namespace kelvaron
