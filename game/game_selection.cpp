#include "game/game_selection.h"

#include <charconv>

#include "chat/main_window.h"
#include "game/awaiting_verification.h"
#include "game/engine_start.h"
#include "game/in_game.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

constexpr int kTitlePoints = 14;
constexpr int kLevels = 32;

void fill(ComboBox& combo, std::initializer_list<int> numbers) {
  for (const int number : numbers) combo.AddItem(std::to_string(number));
}

int numberIn(const std::string& text) {
  int number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

game1::game1(Client& client)
    : Form({.name = "game1",
            .caption = "Request a Game",
            .width = 796 * kTwipsPerPixel,
            .height = 496 * kTwipsPerPixel}),
      client_(client) {
  look();
  for (CheckBox game1::*box : kGameBoxes) {
    CheckBox& clicked = this->*box;
    clicked.Click = [this, &clicked] { gameBox_Click(clicked); };
  }
  Command1.Click = [this] { Command1_Click(); };
  Command3.Click = [this] { Command3_Click(); };
  Command4.Click = [this] { client_.slots.unload(*this); };
}

void game1::look() {
  Label1.Font_ = Font{.points = kTitlePoints, .bold = true};
  for (CheckBox* later :
       {&Check8, &Check9, &Check10, &Check11, &Check12, &Check13, &Check14, &Check15, &Check16,
        &Check17, &Check18, &Check19, &Check21, &Check22, &Check23, &Check24}) {
    later->Enabled = false;
    later->ToolTipText = "A game server's own option; no game that Kelvaron starts here takes it";
  }
  Combo1.AccessibleName = "Timer (Minutes)";
  Combo2.AccessibleName = "DUP";
  Combo3.AccessibleName = "Turbo";
  Combo4.AccessibleName = "Warp to Level";
  Combo5.AccessibleName = "Skill";
  Text1.Text = std::string(kNone);
  Text1.Locked = true;
  Text1.AccessibleName = "External Wad";
  Command1.AccessibleName = "Locate External Wad";
  Text2.Text = std::string(kNone);
  Text2.Enabled = false;
  Command2.Enabled = false;
  Label3.Visible = false;
  Command2.Visible = false;
  for (TextBox* unseen : {&Text2, &Text3, &Text4, &Text5, &Text6, &Text7, &Text8}) {
    unseen->Visible = false;
  }
  Command3.Default = true;
  Command4.Cancel = true;
}

void game1::Form_Load() {
  fill(Combo1, {5, 10, 15, 20, 30, 45, 60, 90});
  fill(Combo2, {1, 2, 3, 4, 5, 6, 7, 8, 9});
  fill(Combo3, {10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 150, 200, 250});
  fill(Combo5, {1, 2, 3, 4, 5});
  const GameConfig config = gameConfigForUser(client_);
  for (std::size_t i = 0; i < kGames.size(); ++i) {
    if (!canPlay(kGames[i], config)) (this->*kGameBoxes[i]).Enabled = false;
  }
}

void game1::gameBox_Click(CheckBox& clicked) {
  if (&clicked == &Check26) fillLevels();
  if (clicked.Value != 1) return;
  for (CheckBox game1::*box : kGameBoxes) {
    CheckBox& other = this->*box;
    if (&other == &clicked || other.Value == 0) continue;
    other.Value = 0;
    // A box that is cleared counts as clicked, which matters for this one alone.
    if (&other == &Check26) fillLevels();
  }
}

void game1::fillLevels() {
  constexpr int kTwoDigits = 10;
  Combo4.Clear();
  for (int level = 1; level <= kLevels; ++level) {
    Combo4.AddItem((level < kTwoDigits ? "0" : "") + std::to_string(level));
  }
}

void game1::Command1_Click() {
  const GameConfig config = gameConfigForUser(client_, kGameRecords);
  CommonDialog1.InitDir = config.externalWadFolder + "\\";
  CommonDialog1.DefaultExt = "wad";
  CommonDialog1.Filter = "*.wad";
  CommonDialog1.DialogTitle = "Choose Your Wad";
  if (CommonDialog1.ShowOpen(client_.ports.dialogs)) Text1.Text = CommonDialog1.FileTitle;
}

GameOptions game1::options() const {
  return {.extratic = Check36.Value == 1,
          .noMonsters = Check1.Value == 1,
          .noMusic = Check2.Value == 1,
          .noSfx = Check3.Value == 1,
          .respawn = Check4.Value == 1,
          .altDeath = Check5.Value == 1,
          .deathmatch = Check6.Value == 1,
          .coop = Check7.Value == 1,
          .fast = Check20.Value == 1,
          .timer = Combo1.Text,
          .dup = Combo2.Text,
          .turbo = Combo3.Text,
          .skill = Combo5.Text,
          .warp = Combo4.Text,
          .record = Check35.Value == 1};
}

void game1::Command3_Click() {
  const GameConfig config = gameConfigForUser(client_, kGameRecords);
  Text5.Text = Text1.Text.get();
  Text6.Text = Text2.Text.get();
  for (std::size_t i = 0; i < kGames.size(); ++i) {
    if ((this->*kGameBoxes[i]).Value != 1) continue;
    Text3.Text = hostBase(kGames[i], config);
    Text4.Text = std::string(kGames[i].key);
  }
  const GameOptions chosen = options();
  Text3.Text = Text3.Text.get() + hostOptions(chosen, client_.ports.files.folder());
  Text7.Text = guestOptions(chosen);
  if (chosen.record) {
    client_.MsgBox(
        "You have selected to record a demo. Your demo will be placed in the Kelvaron Directory");
  }
  if (Text4.Text.get().empty()) {
    client_.MsgBox("You must first choose a game to play before sending a request");
    return;
  }
  if (Check37.Value == 1) {
    startOnce(client_, [&] { playSolo(config); });
  } else {
    playWithGuests(config);
  }
}

void game1::playWithGuests(const GameConfig& config) {
  if (!connectedOrTell(client_)) return;
  const int guests = numberIn(Text8.Text);
  client_.form<frmMain>().Text2.Text =
      hostCommand(Text3.Text.get(), guests + 1, Text1.Text.get(), config);
  Form1& waiting = client_.form<Form1>();
  waiting.Show();
  GameOffer offer{.gameKey = Text4.Text,
                  .wad = Text5.Text,
                  .skin = Text6.Text,
                  .guestOptions = Text7.Text,
                  .hostAddress = client_.sckClient().LocalIP(),
                  .hostNick = client_.form<frmMain>().Label1.Caption};
  for (std::size_t slot = 0; slot < Form1::kSlots && static_cast<int>(slot) < guests; ++slot) {
    offer.invited.push_back(waiting.Label1[slot].Caption);
  }
  waiting.showAsked(offer.invited.size());
  client_.send(outbound::game(offer));
  client_.slots.unload(*this);
}

void game1::playSolo(const GameConfig& config) {
  TextBox& command = client_.form<frmMain>().Text2;
  command.Text = soloCommand(Text3.Text.get(), Text1.Text.get(), config);
  client_.form<Form4>().Show();
  client_.ports.processes.run(command.Text, WindowStyle::maximizedFocus);
}

}  // namespace kelvaron
