// The login window: nickname, choice of server, and the start of the program.
#pragma once

#include "platform/controls.h"

namespace kelvaron {

class Client;

class frmLogin : public Form {
 public:
  explicit frmLogin(Client& client);

  Image imgArt{*this, "imgArt", pixels(0, 0, 360, 72), "login_art"};
  Label lblUserName{*this, "lblUserName", pixels(24, 90, 86, 21), "&User Name:"};
  TextBox txtUserName{*this, "txtUserName", pixels(112, 86, 224, 27)};
  Label lblServerIP{*this, "lblServerIP", pixels(24, 90, 86, 21), "&Server IP:"};
  /// The address of the chosen server.
  TextBox txtServerIP{*this, "txtServerIP", pixels(112, 86, 224, 27)};
  Frame Frame1{*this, "Frame1", pixels(24, 126, 312, 108), "Choose A Server Near You"};
  CheckBox Check1{Frame1, "Check1", pixels(16, 24, 280, 22), "US - Oregon (Main Sever)"};
  CheckBox Check2{Frame1, "Check2", pixels(16, 50, 280, 22), "US - Washington"};
  CheckBox Check3{Frame1, "Check3", pixels(16, 76, 280, 22), "Tournament Server"};
  CheckBox Check4{Frame1, "Check4", pixels(176, 24, 120, 22), "France"};
  CheckBox Check5{Frame1, "Check5", pixels(176, 24, 120, 22), "Australia"};
  CheckBox Check6{Frame1, "Check6", pixels(176, 50, 120, 22), "Germany"};
  CheckBox Check7{Frame1, "Check7", pixels(176, 76, 120, 22), "Asia"};
  CommandButton cmdOK{*this, "cmdOK", pixels(112, 248, 106, 30), "Login"};
  CommandButton cmdCancel{*this, "cmdCancel", pixels(230, 248, 106, 30), "Cancel"};

  void Form_Load() override;
  /// Closing the window is cancelling, unless the room has taken over.
  void Form_Unload() override;

 private:
  void txtUserName_Change();
  void choose(CheckBox& pressed);
  void cmdOK_Click();
  void cmdCancel_Click();

  void connectToServer(const std::string& name);
  void connectionError();
  void setWaiting(bool waiting);

  Client& client_;
};

}  // namespace kelvaron
