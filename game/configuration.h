// Configure Kelvaron: where engines and game data lie on this machine.
#pragma once

#include <array>
#include <string_view>

#include "game/game_config.h"
#include "platform/common_dialog.h"
#include "platform/controls.h"

namespace kelvaron {

class Client;

/// Save and Cancel hide the form and keep what stands in the boxes; the file is read at the first
/// showing only.
class config : public Form {
 public:
  explicit config(Client& client);

  Label Label1{*this, "Label1", pixels(32, 20, 160, 22), "Location Of ZDOOM"};
  TextBox Text1{*this, "Text1", pixels(196, 16, 420, 28)};
  CommandButton Command7{*this, "Command7", pixels(628, 15, 96, 30), "Locate"};

  Frame Frame2{*this, "Frame2", pixels(16, 56, 724, 106), "ZDoomGL"};
  Label Label2{Frame2, "Label2", pixels(16, 32, 160, 22), "Location Of GLZDoom"};
  TextBox Text2{Frame2, "Text2", pixels(180, 28, 420, 28)};
  CommandButton Command8{Frame2, "Command8", pixels(612, 27, 96, 30), "Locate"};
  CheckBox Check1{Frame2, "Check1", pixels(180, 68, 120, 24), "Voodoo1"};
  CheckBox Check2{Frame2, "Check2", pixels(310, 68, 130, 24), "Voodoo2/3"};
  CheckBox Check3{Frame2, "Check3", pixels(450, 68, 100, 24), "AGP"};

  Frame Frame1{*this, "Frame1", pixels(16, 174, 724, 249), "WAD Locations"};
  Label Label3{Frame1, "Label3", pixels(16, 32, 160, 22), "Doom"};
  TextBox Text3{Frame1, "Text3", pixels(180, 28, 420, 28)};
  CommandButton Command1{Frame1, "Command1", pixels(612, 27, 96, 30), "Locate"};
  Label Label4{Frame1, "Label4", pixels(16, 67, 160, 22), "Doom2"};
  TextBox Text4{Frame1, "Text4", pixels(180, 63, 420, 28)};
  CommandButton Command2{Frame1, "Command2", pixels(612, 62, 96, 30), "Locate"};
  Label Label5{Frame1, "Label5", pixels(16, 102, 160, 22), "Final Doom"};
  TextBox Text5{Frame1, "Text5", pixels(180, 98, 420, 28)};
  CommandButton Command3{Frame1, "Command3", pixels(612, 97, 96, 30), "Locate"};
  Label Label6{Frame1, "Label6", pixels(16, 137, 160, 22), "Plutonia Experiment"};
  TextBox Text6{Frame1, "Text6", pixels(180, 133, 420, 28)};
  CommandButton Command4{Frame1, "Command4", pixels(612, 132, 96, 30), "Locate"};
  Label Label7{Frame1, "Label7", pixels(16, 172, 160, 22), "Evilution"};
  TextBox Text7{Frame1, "Text7", pixels(180, 168, 420, 28)};
  CommandButton Command5{Frame1, "Command5", pixels(612, 167, 96, 30), "Locate"};
  Label Label8{Frame1, "Label8", pixels(16, 207, 160, 22), "External Wad Location"};
  TextBox Text8{Frame1, "Text8", pixels(180, 203, 420, 28)};
  // Never seen: a second folder of extra wads, which only passes through.
  Label Label9{Frame1, "Label9", pixels(16, 207, 160, 22), "External Wad Location"};
  TextBox Text9{Frame1, "Text9", pixels(180, 203, 420, 28)};

  Label Label10{*this, "Label10", pixels(32, 441, 160, 22), "CSDoom Server"};
  TextBox Text10{*this, "Text10", pixels(196, 437, 420, 28)};
  CommandButton Command6{*this, "Command6", pixels(628, 436, 96, 30), "Locate"};
  Label Label11{*this, "Label11", pixels(32, 476, 160, 22), "CSDoom Client"};
  TextBox Text11{*this, "Text11", pixels(196, 472, 420, 28)};
  CommandButton Command11{*this, "Command11", pixels(628, 471, 96, 30), "Locate"};

  /// Why a file that was located was not taken; empty for nothing to say.
  Label Label12{*this, "Label12", pixels(32, 512, 396, 40), ""};

  CommandButton Command9{*this, "Command9", pixels(444, 516, 172, 30), "Save Configuration"};
  CommandButton Command10{*this, "Command10", pixels(628, 516, 96, 30), "Cancel"};

  /// Never seen: the location of ZDoomGL alone, as located last.
  TextBox Text12{*this, "Text12", {}};
  CommonDialog CommonDialog1;

  void Form_Load() override;
  /// The keyboard begins at the first location without which there is no game.
  void focusOnMissing();

  /// The boxes in the order of the records.
  static constexpr std::array<TextBox config::*, kGameConfigRecords> kBoxes = {
      &config::Text1, &config::Text2,  &config::Text3, &config::Text4,
      &config::Text5, &config::Text6,  &config::Text7, &config::Text8,
      &config::Text9, &config::Text10, &config::Text11};

 private:
  struct Location;
  struct VideoCard;
  static const std::array<Location, 9> kLocations;
  static const std::array<VideoCard, 3> kVideoCards;

  void look();
  void wire();
  void locate(const Location& location);
  void chooseCard(const VideoCard& card);
  void Command9_Click();

  Client& client_;
};

}  // namespace kelvaron
