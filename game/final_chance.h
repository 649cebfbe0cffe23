// A guest's last look at the command, with the choice to back out and to record a demo.
#pragma once

#include "game/pending_offer.h"
#include "platform/controls.h"

namespace kelvaron {

class Client;

class Form3 : public Form {
 public:
  explicit Form3(Client& client);

  Label Label1{*this, "Label1", pixels(16, 14, 568, 66),
               "The following command is being sent to Windows to start a game. Please verify that "
               "this is what you want before hitting OK. This will not be a permenent message. "
               "Beta stage only."};
  TextBox Text1{*this, "Text1", pixels(16, 88, 568, 110)};
  CheckBox Check1{*this, "Check1", pixels(16, 212, 180, 24), "Record a Demo"};
  TextBox Text2{*this, "Text2", pixels(204, 210, 380, 28)};
  CommandButton Command1{*this, "Command1", pixels(318, 254, 120, 30), "OK"};
  CommandButton Command2{*this, "Command2", pixels(450, 254, 134, 30), "Cancel Launch"};

  void Form_Load() override;

  void Form_Unload() override;

  /// Another offer has come: shows its command, and an OK that was meant for the one before starts
  /// nothing.
  void offerChanged();

 private:
  void Check1_MouseUp();
  void Command1_Click();
  void start();
  bool refused();
  bool changeTold();
  void show(const PendingOffer& offer);

  Client& client_;
  PendingOffer shown_;
  // The command is another than the one that the user was shown at first.
  bool changed_ = false;
};

}  // namespace kelvaron
