#include "game/first_game.h"

#include <algorithm>

#include "chat/main_window.h"
#include "game/configuration.h"
#include "game/game_table.h"
#include "game/installed_games.h"
#include "session/client.h"

namespace kelvaron {

bool somethingToPlay(Client& client) {
  const GameConfig config = gameConfigAsItIs(client.ports.files);
  return std::ranges::any_of(kGames, [&](const Game& game) { return canPlay(game, config); });
}

void hintAtFirstGame(Client& client, frmMain& room) {
  if (somethingToPlay(client)) return;
  room.hints.stand({.text = "Before your first game, tell Kelvaron what to play with.",
                    .link = "Configure Games"},
                   [&client] { configureGames(client); });
}

void configurationChanged(Client& client) {
  auto* room = client.loadedForm<frmMain>();
  if (room != nullptr && somethingToPlay(client)) room->hints.drop();
}

bool offerInstalled(Client& client) {
  auto& places = client.lasting<GamePlaces>();
  if (places.offered || gameConfigAsItIs(client.ports.files) != GameConfig{}) return false;
  const auto found = findInstalled(places, [&client](const std::string& path) {
    return !FaultRule::stop().handle([&] { client.ports.streams.open(path); });
  });
  if (!found) return false;
  places.offered = true;
  if (!client.offer(found->names + " are installed. Use them?")) return false;
  saveGameConfig(client.ports.files, found->config);
  // Its boxes show what was read before.
  if (auto* form = client.loadedForm<config>()) form->Form_Load();
  configurationChanged(client);
  client.form<frmMain>().hints.pass(found->names + " are set up. Request A Game begins a game.");
  return true;
}

void configureGames(Client& client) {
  if (offerInstalled(client)) return;
  auto& form = client.form<config>();
  form.focusOnMissing();
  form.Show();
}

}  // namespace kelvaron
