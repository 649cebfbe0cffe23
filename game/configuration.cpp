#include "game/configuration.h"

#include <algorithm>

#include "base/code_page.h"
#include "game/first_game.h"
#include "session/client.h"

namespace kelvaron {

// A Locate button: the words of its dialog, and how the name of the file must end.
struct config::Location {
  CommandButton config::*button;
  TextBox config::*target;
  std::string_view filter;
  std::string_view expected;
  std::string_view accessibleName;
};

constexpr std::array<config::Location, 9> config::kLocations = {{
    {&config::Command7, &config::Text1, "ZDOOM", "ZDOOM.EXE", "Locate ZDOOM"},
    {&config::Command8, &config::Text2, "GLDOOM", "ZDOOMGL.EXE", "Locate GLZDoom"},
    {&config::Command1, &config::Text3, "doom.wad", "DOOM.WAD", "Locate Doom"},
    {&config::Command2, &config::Text4, "doom2.wad", "DOOM2.WAD", "Locate Doom2"},
    {&config::Command3, &config::Text5, "Final Doom", "DOOM2F.WAD", "Locate Final Doom"},
    {&config::Command4, &config::Text6, "Plutonia", "PLUTONIA.WAD", "Locate Plutonia Experiment"},
    {&config::Command5, &config::Text7, "Evilution", "TNT.WAD", "Locate Evilution"},
    {&config::Command6, &config::Text10, "CSDoomsv", "DOOMSV.EXE", "Locate CSDoom Server"},
    {&config::Command11, &config::Text11, "CSDoomcl", "DOOMCL.EXE", "Locate CSDoom Client"},
}};

// A video card and the switches that ZDoomGL needs for it.
struct config::VideoCard {
  CheckBox config::*box;
  std::string_view switches;
};

constexpr std::array<config::VideoCard, 3> config::kVideoCards = {{
    {&config::Check1, " -paltex -3dfx -sprmaxsurf 4096"},
    {&config::Check2, " -paltex -3dfx"},
    {&config::Check3, " -width 640 -height 480"},
}};

config::config(Client& client)
    : Form({.name = "config",
            .caption = "Configure Kelvaron",
            .width = 756 * kTwipsPerPixel,
            .height = 564 * kTwipsPerPixel}),
      client_(client) {
  look();
  wire();
}

void config::look() {
  Text1.AccessibleName = "Location Of ZDOOM";
  Text2.AccessibleName = "Location Of GLZDoom";
  Text3.AccessibleName = "Doom";
  Text4.AccessibleName = "Doom2";
  Text5.AccessibleName = "Final Doom";
  Text6.AccessibleName = "Plutonia Experiment";
  Text7.AccessibleName = "Evilution";
  Text8.AccessibleName = "External Wad Location";
  Text10.AccessibleName = "CSDoom Server";
  Text11.AccessibleName = "CSDoom Client";
  for (TextBox* onlyLocated : {&Text5, &Text6, &Text7}) onlyLocated->Enabled = false;
  Label12.WordWrap = true;
  Label9.Visible = false;
  Text9.Visible = false;
  Text12.Visible = false;
  HidesOnClose = true;
  Command9.Default = true;
  Command10.Cancel = true;
}

void config::wire() {
  for (const Location& location : kLocations) {
    CommandButton& button = this->*location.button;
    button.AccessibleName = location.accessibleName;
    button.Click = [this, &location] { locate(location); };
  }
  for (const VideoCard& card : kVideoCards) {
    CheckBox& box = this->*card.box;
    box.MouseDown = [this, &card](MouseButton) { chooseCard(card); };
    box.MouseUp = [this, &card](MouseButton) { chooseCard(card); };
    // The keyboard raises this one alone.
    box.Click = [this, &card] { chooseCard(card); };
  }
  Command9.Click = [this] { Command9_Click(); };
  Command10.Click = [this] { Visible = false; };
}

void config::Form_Load() {
  // A file that is missing or short leaves boxes empty; Save makes it anew.
  const FaultRule rule = FaultRule::goOn();
  rule.step([&] {
    const GameConfig saved = parseGameConfig(client_.ports.files.read(kGameConfigFile)).config;
    for (std::size_t i = 0; i < kBoxes.size(); ++i) {
      (this->*kBoxes[i]).Text = saved.*kGameConfigOrder[i];
    }
  });
}

void config::focusOnMissing() {
  const auto empty = [](const TextBox& box) { return box.Text.get().empty(); };
  const bool engine = !empty(Text1) || !empty(Text2);
  const bool data = !std::ranges::all_of(
      std::array{&config::Text3, &config::Text4, &config::Text5, &config::Text6, &config::Text7},
      [&](TextBox config::*box) { return empty(this->*box); });
  (engine && !data ? Text3 : Text1).SetFocus();
}

void config::locate(const Location& location) {
  CommonDialog1.Filter = location.filter;
  // A dismissed dialog leaves the name of the file that was chosen last, and that one is tested.
  CommonDialog1.ShowOpen(client_.ports.dialogs);
  const std::string& name = CommonDialog1.FileName;
  TextBox& target = this->*location.target;
  Label12.Caption = "";
  if (!upper(name).ends_with(location.expected)) {
    target.Text = "";
    if (name.empty()) return;
    Label12.Caption = target.AccessibleName + " takes a file whose name ends in " +
                      std::string(location.expected) + ", and \"" + nameWithoutFolder(name) +
                      "\" doesn't.";
    return;
  }
  target.Text = name;
  if (&target == &Text2) Text12.Text = name;
}

void config::chooseCard(const VideoCard& chosen) {
  for (const VideoCard& card : kVideoCards) (this->*card.box).Value = &card == &chosen ? 1 : 0;
  if (!Text12.Text.get().empty()) Text2.Text = Text12.Text.get() + std::string(chosen.switches);
}

void config::Command9_Click() {
  GameConfig typed;
  for (std::size_t i = 0; i < kBoxes.size(); ++i) {
    typed.*kGameConfigOrder[i] = (this->*kBoxes[i]).Text;
  }
  const auto fault = FaultRule::stop().handle([&] { saveGameConfig(client_.ports.files, typed); });
  if (fault) {
    client_.MsgBox("Your configuration was not saved. " + std::string(fault->what()) + ".",
                   box_style::kCritical);
    return;
  }
  Visible = false;
  configurationChanged(client_);
  // The file has no way to hold such a value; it is written as it stands all the same.
  if (parseGameConfig(formatGameConfig(typed)).config == typed) return;
  client_.MsgBox(
      "One of your locations holds a comma, or begins with a blank or a quotation mark. The "
      "configuration cannot hold that: please move the files to a folder without it.",
      box_style::kExclamation);
}

}  // namespace kelvaron
