// Kicking a user with a proof of being a moderator. The server opens this form.
#pragma once

#include "platform/combo_box.h"
#include "platform/controls.h"

namespace kelvaron {

class Client;

class frmkick : public Form {
 public:
  explicit frmkick(Client& client);

  Label Label1{*this, "Label1", pixels(16, 20, 280, 22), "Who would you like to kick?"};
  /// The users at the time of opening; any other text can be typed.
  ComboBox Combo1{*this, "Combo1", pixels(304, 16, 240, 30)};
  Label Label2{*this, "Label2", pixels(16, 60, 280, 22), "Password"};
  TextBox Text1{*this, "Text1", pixels(304, 56, 240, 30)};
  Label Label4{*this, "Label4", pixels(16, 100, 280, 22), "Email address registered with QZN"};
  TextBox Text2{*this, "Text2", pixels(304, 96, 240, 30)};
  Label Label3{*this, "Label3", pixels(16, 138, 528, 88),
               "All ip numbers of users kicking other users is logged. Only moderators may use "
               "this function. If it is used by someone other than a Mod then you will be banned."};
  CommandButton Command1{*this, "Command1", pixels(232, 236, 180, 30), "Kick Selected User"};
  CommandButton Command2{*this, "Command2", pixels(424, 236, 120, 30), "Nevermind."};

  void Form_Load() override;

 private:
  void Command1_Click();
  void Command2_Click();

  Client& client_;
};

}  // namespace kelvaron
