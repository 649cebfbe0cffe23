// The message of the day.
#pragma once

#include "platform/controls.h"

namespace kelvaron {

class Client;

class Form5 : public Form {
 public:
  explicit Form5(Client& client);

  Label Label1{*this, "Label1", pixels(16, 12, 266, 24), "MOTD"};
  TextBox Text1{*this, "Text1", pixels(16, 40, 448, 180)};
  CommandButton Command1{*this, "Command1", pixels(358, 234, 106, 30), "OK"};

 private:
  void Command1_Click();

  Client& client_;
};

}  // namespace kelvaron
