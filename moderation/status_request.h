// Asking the server for moderator status.
#pragma once

#include "platform/controls.h"

namespace kelvaron {

class Client;

/// What is typed goes to the server as it stands and is stored nowhere.
class frmGetOP : public Form {
 public:
  explicit frmGetOP(Client& client);

  Label Label1{*this, "Label1", pixels(16, 20, 230, 22), "Enter your E-mail address:"};
  TextBox txtEMail{*this, "txtEMail", pixels(252, 16, 244, 30)};
  Label Label2{*this, "Label2", pixels(16, 60, 230, 22), "Enter your password:"};
  TextBox txtPassword{*this, "txtPassword", pixels(252, 56, 244, 30)};
  Label Label3{*this, "Label3", pixels(16, 98, 480, 44),
               "Warning: All invalid requests are logged! Along with your username and IP."};
  CommandButton cmdOK{*this, "cmdOK", pixels(236, 152, 140, 30), "Request Status"};
  CommandButton cmdCancel{*this, "cmdCancel", pixels(388, 152, 108, 30), "Cancel"};

 private:
  void cmdOK_Click();
  void cmdCancel_Click();

  Client& client_;
};

}  // namespace kelvaron
