#include "game/game_request.h"

#include "chat/main_window.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {

request::request(Client& client)
    : Form({.name = "request",
            .caption = "Game Request",
            .width = 560 * kTwipsPerPixel,
            .height = 370 * kTwipsPerPixel}),
      client_(client) {
  ControlBox = false;
  Text1.AccessibleName = "Game request from";
  Text2.AccessibleName = "Game";
  Text3.AccessibleName = "Wad";
  Text4.AccessibleName = "Skin";
  Text5.AccessibleName = "Command Line";
  Text6.AccessibleName = "Users IP";
  for (TextBox* shown : {&Text1, &Text2, &Text3, &Text4, &Text5, &Text6}) shown->Locked = true;
  Label7.WordWrap = true;
  Command1.Click = [this] { answer(true); };
  Command2.Click = [this] { answer(false); };
}

void request::answer(bool accepted) {
  const std::string& host = Text1.Text;
  const std::string& shownName = client_.form<frmMain>().Label1.Caption;
  const bool sent = sendOrTell(
      client_, accepted ? outbound::accept(host, shownName) : outbound::decline(host, shownName));
  // An offer that can't be accepted any more can still be put away.
  if (!sent && accepted) return;
  client_.slots.unload(*this);
}

}  // namespace kelvaron
