// Writing a private message.
#pragma once

#include "platform/controls.h"

namespace kelvaron {

class Client;

class SendPM : public Form {
 public:
  explicit SendPM(Client& client);

  Label Label1{*this, "Label1", pixels(16, 18, 140, 22), "Private Message to: "};
  /// The target: an entry of the user list, tag included.
  Label Label2{*this, "Label2", pixels(160, 18, 304, 22), ""};
  TextBox Text1{*this, "Text1", pixels(16, 50, 448, 30)};
  CommandButton Command1{*this, "Command1", pixels(228, 96, 112, 30), "&Send"};
  CommandButton Command2{*this, "Command2", pixels(352, 96, 112, 30), "&Cancel"};

  void Form_Load() override;

 private:
  void Command1_Click();
  void Command2_Click();

  Client& client_;
};

}  // namespace kelvaron
