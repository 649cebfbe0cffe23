#include "game/game_request.h"

#include <chrono>

#include "chat/main_window.h"
#include "game/game_table.h"
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
  for (CommandButton* button : {&Command1, &Command2}) {
    button->Pressed = [this] { offers_.press(client_.now()); };
  }
  Command1.Main = true;
  Command1.Click = [this] { answer(true); };
  Command2.Click = [this] { answer(false); };
}

void request::show(const GameOffer& offer, const PendingOffer& pending) {
  const Game* game = findGame(offer.gameKey);
  Text1.Text = offer.hostNick;
  Text2.Text = std::string(game == nullptr ? "" : game->displayName);
  Text3.Text = offer.wad;
  Text4.Text = offer.skin;
  Text5.Text = offer.guestOptions;
  Text6.Text = offer.hostAddress;
  offers_.show(pending, client_.now());
}

void request::answer(bool accepted) {
  const std::optional<PendingOffer> offer = offers_.take(client_.now());
  if (!offer) return;
  const std::string& shownName = client_.form<frmMain>().Label1.Caption;
  const bool sent = sendOrTell(client_, accepted ? outbound::accept(offer->host, shownName)
                                                 : outbound::decline(offer->host, shownName));
  if (sent && accepted) {
    client_.lasting<PendingOffers>().accepted = offer;
    constexpr std::chrono::minutes kUntilGo{5};
    client_.form<frmMain>().hints.pass(
        "You have accepted " + offer->host + "'s game. It begins when the host presses GO.",
        kUntilGo);
  }
  // An offer that can't be accepted any more can still be put away.
  if (!sent && accepted) return;
  if (offers_.isShown(*offer)) client_.slots.unload(*this);
}

}  // namespace kelvaron
