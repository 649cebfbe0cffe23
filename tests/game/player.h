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
#include "tests/support/line_server.h"
#include "tests/support/test_desktop.h"

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

/// Logged in as "bob"; the server has seen the login's lines.
class Player : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(desktop.logIn("bob"));
    ASSERT_TRUE(desktop.until([&] { return server.lines.size() == 2; }));
    server.lines.clear();
    saveGameConfig(desktop.files, kPlayersConfig);
  }

  frmMain& room() { return desktop.room(); }
  template <class F>
  F& form() {
    return desktop.client->form<F>();
  }
  void click(CommandButton& button) { desktop.raise(button.Click); }
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
  /// Says lines, each with its end, and waits until all are handled.
  void say(const std::string& lines) {
    const std::string mark = "mark" + std::to_string(++marks_);
    server.say(lines + "PLAYSOUND\t" + mark + "\r\n");
    ASSERT_TRUE(desktop.until([&] { return std::ranges::count(desktop.sounds, mark) == 1; }));
    std::erase(desktop.sounds, mark);
  }
  /// What the server has received since the last call.
  std::vector<std::string> received() {
    const std::size_t before = server.lines.size();
    desktop.until([&] { return server.lines.size() > before; });
    return take();
  }
  std::vector<std::string> take() { return std::exchange(server.lines, {}); }
  void hangUp() {
    server.hangUp();
    ASSERT_TRUE(desktop.until(
        [&] { return desktop.client->sckClient().State() != SocketState::connected; }));
  }
  std::vector<std::string> boxTexts() {
    std::vector<std::string> texts;
    for (const Box& box : std::exchange(desktop.boxes, {})) texts.push_back(box.text);
    return texts;
  }

  PollLoop loop;
  LineServer server{loop};
  TestDesktop desktop{loop, server.port()};

 private:
  int marks_ = 0;
};

}  // namespace kelvaron::testing
