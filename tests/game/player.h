// A logged-in player with a game configuration, on a chat server that the test plays.
#pragma once

#include <gmock/gmock.h>

#include <fstream>

#include "game/awaiting_verification.h"
#include "game/configuration.h"
#include "game/final_chance.h"
#include "game/game_request.h"
#include "game/game_selection.h"
#include "game/in_game.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {

inline const GameConfig kPlayersConfig{"/e/zdoom.exe",
                                       "/e/zdoomgl.exe -3dfx",
                                       "/w/doom.wad",
                                       "/w/doom2.wad",
                                       "/w/doom2f.wad",
                                       "/w/plutonia.wad",
                                       "/w/tnt.wad",
                                       "/w/extra",
                                       "",
                                       "/e/doomsv.exe",
                                       "/e/doomcl.exe"};
inline const std::string kOffer = "GAME\tzdoom\tNONE\tNONE\t\t10.0.0.7\tann\r\n";

class Player : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    saveGameConfig(desktop.files, kPlayersConfig);
  }
  /// An offer comes, the user accepts it, and the host presses GO.
  void agreeAndStart(const std::string& offer = kOffer) {
    say(offer);
    take();
    click(form<request>().Command1);
    EXPECT_EQ(received().size(), 1U);
    say("START\r\n");
  }
  /// Time passes, as far as what the client allows presses is concerned.
  void wait(std::chrono::milliseconds time) {
    ahead_ += time;
    desktop.client->now = [this] { return std::chrono::steady_clock::now() + ahead_; };
  }
  void tick(CheckBox& box) {
    desktop.edge.run([&] { box.Value = box.Value == 1 ? 0 : 1; });
    desktop.raise(box.Click);
  }
  /// Fills the user list and selects the first `selected` entries.
  void list(const std::vector<std::string>& entries, int selected) {
    room().List1.Clear();
    for (const std::string& entry : entries) room().List1.AddItem(entry);
    // Who was selected before the rebuild would be again.
    for (int i = 0; i < room().List1.ListCount(); ++i) room().List1.setSelected(i, i < selected);
  }
  /// What was started since the last call; "hidden " in front of what takes no focus.
  std::vector<std::string> started() {
    std::vector<std::string> commands;
    for (const auto& [command, style] : std::exchange(desktop.started, {})) {
      commands.push_back((style == WindowStyle::maximizedFocus ? "" : "hidden ") + command);
    }
    return commands;
  }

 private:
  std::chrono::milliseconds ahead_{0};
};

}  // namespace kelvaron::testing
