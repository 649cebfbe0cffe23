// Request a Game: which game, with which options.
#pragma once

#include <array>

#include "game/launch_command.h"
#include "platform/combo_box.h"
#include "platform/common_dialog.h"
#include "platform/controls.h"

namespace kelvaron {

class Client;

class game1 : public Form {
 public:
  explicit game1(Client& client);

  Label Label1{*this, "Label1", pixels(16, 10, 500, 30), "Kelvaron Game Request"};

  Frame Frame1{*this, "Frame1", pixels(16, 46, 400, 174), "Select Game"};
  CheckBox Check25{Frame1, "Check25", pixels(14, 28, 176, 24), kGames[0].caption};
  CheckBox Check26{Frame1, "Check26", pixels(14, 56, 176, 24), kGames[1].caption};
  CheckBox Check27{Frame1, "Check27", pixels(14, 84, 176, 24), kGames[2].caption};
  CheckBox Check28{Frame1, "Check28", pixels(14, 112, 176, 24), kGames[3].caption};
  CheckBox Check29{Frame1, "Check29", pixels(14, 140, 176, 24), kGames[4].caption};
  CheckBox Check30{Frame1, "Check30", pixels(194, 28, 202, 24), kGames[5].caption};
  CheckBox Check31{Frame1, "Check31", pixels(194, 56, 202, 24), kGames[6].caption};
  CheckBox Check32{Frame1, "Check32", pixels(194, 84, 202, 24), kGames[7].caption};
  CheckBox Check33{Frame1, "Check33", pixels(194, 112, 202, 24), kGames[8].caption};
  CheckBox Check34{Frame1, "Check34", pixels(194, 140, 202, 24), kGames[9].caption};

  Frame fraOptions{*this, "fraOptions", pixels(16, 230, 400, 202), "Options"};
  CheckBox Check1{fraOptions, "Check1", pixels(14, 28, 176, 24), "No Monsters"};
  CheckBox Check2{fraOptions, "Check2", pixels(14, 56, 176, 24), "No Music"};
  CheckBox Check3{fraOptions, "Check3", pixels(14, 84, 176, 24), "No SFX"};
  CheckBox Check4{fraOptions, "Check4", pixels(14, 112, 176, 24), "Monsters Respawn"};
  CheckBox Check20{fraOptions, "Check20", pixels(14, 140, 176, 24), "Fast Monsters"};
  CheckBox Check36{fraOptions, "Check36", pixels(14, 168, 372, 24),
                   "Extratic (Sends backup movements)"};
  CheckBox Check5{fraOptions, "Check5", pixels(194, 28, 202, 24), "Deathmatch (Respawn)"};
  CheckBox Check6{fraOptions, "Check6", pixels(194, 56, 202, 24), "Deathmatch"};
  CheckBox Check7{fraOptions, "Check7", pixels(194, 84, 202, 24), "Co-Op"};
  CheckBox Check35{fraOptions, "Check35", pixels(194, 112, 202, 24), "Record Demo (Host Only)"};
  CheckBox Check37{fraOptions, "Check37", pixels(194, 140, 202, 24), "Make my game a SOLO GAME"};

  Frame Frame5{*this, "Frame5", pixels(430, 46, 170, 62), "Skill"};
  ComboBox Combo5{Frame5, "Combo5", pixels(12, 26, 146, 28)};
  Frame Frame6{*this, "Frame6", pixels(610, 46, 170, 62), "Warp to Level"};
  ComboBox Combo4{Frame6, "Combo4", pixels(12, 26, 146, 28)};
  Frame Frame2{*this, "Frame2", pixels(430, 112, 150, 62), "Timer (Minutes)"};
  ComboBox Combo1{Frame2, "Combo1", pixels(12, 26, 126, 28)};
  Frame Frame3{*this, "Frame3", pixels(590, 112, 90, 62), "DUP"};
  ComboBox Combo2{Frame3, "Combo2", pixels(12, 26, 66, 28)};
  Frame Frame4{*this, "Frame4", pixels(690, 112, 90, 62), "Turbo"};
  ComboBox Combo3{Frame4, "Combo3", pixels(12, 26, 66, 28)};

  Label Label2{*this, "Label2", pixels(430, 180, 220, 20), "External Wad"};
  TextBox Text1{*this, "Text1", pixels(430, 202, 240, 30)};
  CommandButton Command1{*this, "Command1", pixels(680, 202, 100, 30), "Locate"};

  // No game that is started from here takes them, so they stand closer together.
  Frame fraServer{*this, "fraServer", pixels(430, 242, 350, 190), "Server Options"};
  CheckBox Check8{fraServer, "Check8", pixels(14, 24, 160, 20), "Use Rail Gun"};
  CheckBox Check9{fraServer, "Check9", pixels(14, 44, 160, 20), "Falling Damage"};
  CheckBox Check10{fraServer, "Check10", pixels(14, 64, 160, 20), "Weapons Stay"};
  CheckBox Check11{fraServer, "Check11", pixels(14, 84, 160, 20), "Allow Power-Ups"};
  CheckBox Check12{fraServer, "Check12", pixels(14, 104, 160, 20), "Allow Health"};
  CheckBox Check13{fraServer, "Check13", pixels(14, 124, 160, 20), "Allow Armor"};
  CheckBox Check14{fraServer, "Check14", pixels(14, 144, 160, 20), "Spawn Farthest"};
  CheckBox Check15{fraServer, "Check15", pixels(14, 164, 160, 20), "Same Map"};
  CheckBox Check16{fraServer, "Check16", pixels(180, 24, 164, 20), "Force Respawn"};
  CheckBox Check17{fraServer, "Check17", pixels(180, 44, 164, 20), "Allow Exit"};
  CheckBox Check18{fraServer, "Check18", pixels(180, 64, 164, 20), "Infinate Ammo"};
  CheckBox Check19{fraServer, "Check19", pixels(180, 84, 164, 20), "Monster Respawn"};
  CheckBox Check21{fraServer, "Check21", pixels(180, 104, 164, 20), "Power-Ups respawn"};
  CheckBox Check22{fraServer, "Check22", pixels(180, 124, 164, 20), "Allow Jump"};
  CheckBox Check23{fraServer, "Check23", pixels(180, 144, 164, 20), "Allow Freelook"};
  CheckBox Check24{fraServer, "Check24", pixels(180, 164, 164, 20), "Friendly Fire"};

  CommandButton Command3{*this, "Command3", pixels(530, 448, 140, 30), "Send Request"};
  CommandButton Command4{*this, "Command4", pixels(680, 448, 100, 30), "Cancel"};

  // Never seen: the skin, the host's command and the guests' options under construction, the
  // game's key, copies of wad and skin for the offer, and the number of invited players.
  Label Label3{*this, "Label3", {}, "Skin"};
  TextBox Text2{*this, "Text2", {}};
  CommandButton Command2{*this, "Command2", {}, "Locate"};
  TextBox Text3{*this, "Text3", {}};
  TextBox Text4{*this, "Text4", {}};
  TextBox Text5{*this, "Text5", {}};
  TextBox Text6{*this, "Text6", {}};
  TextBox Text7{*this, "Text7", {}};
  TextBox Text8{*this, "Text8", {}};

  CommonDialog CommonDialog1;

  void Form_Load() override;

  /// The boxes of the ten games, in the order of `kGames`.
  static constexpr std::array<CheckBox game1::*, kGames.size()> kGameBoxes = {
      &game1::Check25, &game1::Check26, &game1::Check27, &game1::Check28, &game1::Check29,
      &game1::Check30, &game1::Check31, &game1::Check32, &game1::Check33, &game1::Check34};

 private:
  void look();
  void gameBox_Click(CheckBox& clicked);
  void fillLevels();
  void Command1_Click();
  void Command3_Click();
  GameOptions options() const;
  void playWithGuests(const GameConfig& config);
  void playSolo(const GameConfig& config);

  Client& client_;
};

}  // namespace kelvaron
