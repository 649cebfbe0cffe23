// An offer that another player has sent: who, which game, with what; Accept or Decline.
#pragma once

#include "game/pending_offer.h"
#include "platform/controls.h"
#include "session/game_offer.h"
#include "session/read_content.h"

namespace kelvaron {

class Client;

class request : public Form {
 public:
  explicit request(Client& client);

  Label Label1{*this, "Label1", pixels(16, 20, 320, 22), "You have recieved a Game request from :"};
  TextBox Text1{*this, "Text1", pixels(340, 16, 204, 28)};
  Label Label2{*this, "Label2", pixels(16, 64, 120, 22), "Game:"};
  TextBox Text2{*this, "Text2", pixels(140, 60, 404, 28)};
  Label Label3{*this, "Label3", pixels(16, 100, 120, 22), "Wad"};
  TextBox Text3{*this, "Text3", pixels(140, 96, 404, 28)};
  Label Label4{*this, "Label4", pixels(16, 136, 120, 22), "Skin"};
  TextBox Text4{*this, "Text4", pixels(140, 132, 404, 28)};
  Label Label5{*this, "Label5", pixels(16, 172, 120, 22), "Command Line"};
  TextBox Text5{*this, "Text5", pixels(140, 168, 404, 28)};
  Label Label6{*this, "Label6", pixels(16, 208, 120, 22), "Users IP"};
  TextBox Text6{*this, "Text6", pixels(140, 204, 404, 28)};
  Label Label7{*this, "Label7", pixels(16, 246, 528, 64),
               "You will have one more chance to decline this game and you will be givin a chance "
               "to record your own demo of this game on your next screen."};
  CommandButton Command1{*this, "Command1", pixels(304, 322, 114, 30), "Accept"};
  CommandButton Command2{*this, "Command2", pixels(430, 322, 114, 30), "Decline"};

  /// Fills the boxes; an answer goes to whom the user can have read.
  void show(const GameOffer& offer, const PendingOffer& pending);

 private:
  void answer(bool accepted);

  Client& client_;
  ReadContent<PendingOffer> offers_;
};

}  // namespace kelvaron
