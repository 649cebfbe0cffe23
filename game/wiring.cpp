#include "game/wiring.h"

#include <vector>

#include "chat/main_window.h"
#include "game/awaiting_verification.h"
#include "game/csdoom.h"
#include "game/first_game.h"
#include "game/game_selection.h"
#include "session/client.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

std::vector<std::string> selectedUsers(const ListBox& users) {
  std::vector<std::string> selected;
  for (int i = 0; i < users.ListCount(); ++i) {
    if (users.Selected(i)) selected.push_back(users.List(i));
  }
  return selected;
}

void requestGame(Client& client, frmMain& room) {
  if (!connectedOrTell(client)) return;
  // A game form with nothing to tick would be a dead end.
  if (client.loadedForm<game1>() == nullptr && !somethingToPlay(client) &&
      !offerInstalled(client)) {
    client.MsgBox(
        "Before your first game, please tell Kelvaron where your game engine and your wads are.",
        box_style::kInformation);
    configureGames(client);
    return;
  }
  const std::vector<std::string> invited = selectedUsers(room.List1);
  if (invited.size() > Form1::kSlots) {
    client.MsgBox("You can invite up to six players, but " + std::to_string(invited.size()) +
                      " are selected. Please unselect some of them.",
                  box_style::kExclamation);
    return;
  }
  client.form<Form1>().invite(invited);
  client.ports.application.DoEvents();
  game1& form = client.form<game1>();
  form.Text8.Text = std::to_string(invited.size());
  form.Show();
}

}  // namespace

void wireGame(Client& client, frmMain& room) {
  room.Command1.Click = [&] { requestGame(client, room); };
  room.Command2.Click = [&] { returnFromCs(client, room); };
  room.mnuConfig.Click = [&] { configureGames(client); };
  room.mnuLaunchCsServer.Click = [&] { launchCsServer(client, room); };
  room.mnuJoinGame.Click = [&] { joinCsGame(client, room); };
  hintAtFirstGame(client, room);
}

}  // namespace kelvaron
