// A logged-in player with a game configuration, on a chat server that the test plays.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "game/awaiting_verification.h"
#include "game/final_chance.h"
#include "game/game_request.h"
#include "game/game_selection.h"
#include "game/in_game.h"
#include "peer/configuration.h"
#include "tests/support/client_test.h"

namespace kelvaron::testing {

inline const GameConfig kPlayersConfig{.zdoomPath = "/e/zdoom.exe",
                                       .glZdoomCommand = "/e/zdoomgl.exe -3dfx",
                                       .doomWad = "/w/doom.wad",
                                       .doom2Wad = "/w/doom2.wad",
                                       .finalDoomWad = "/w/doom2f.wad",
                                       .plutoniaWad = "/w/plutonia.wad",
                                       .evilutionWad = "/w/tnt.wad",
                                       .externalWadFolder = "/w/extra",
                                       .externalWadFolder2 = "",
                                       .csServerPath = "/e/doomsv.exe",
                                       .csClientPath = "/e/doomcl.exe"};

class Player : public ClientTest {
 protected:
  void SetUp() override {
    ClientTest::SetUp();
    saveGameConfig(desktop.files, kPlayersConfig);
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
};

}  // namespace kelvaron::testing
