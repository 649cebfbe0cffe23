#include "game/awaiting_verification.h"

#include "chat/colors.h"
#include "chat/main_window.h"
#include "game/engine_start.h"
#include "game/in_game.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {

Form1::Form1(Client& client)
    : Form({.name = "Form1",
            .caption = "Awaiting Verification",
            .width = 692 * kTwipsPerPixel,
            .height = 272 * kTwipsPerPixel}),
      client_(client) {
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    Label& name = Label1[slot];
    name.Index = static_cast<int>(slot);
    name.ForeColor = colors::kUsers;
    const std::string player = "Player " + std::to_string(slot + 1);
    name.AccessibleName = player;
    red_[slot]->AccessibleName = player + " declined";
    green_[slot]->AccessibleName = player + " accepted";
  }
  // Enter behind the game form is not meant for this one.
  Command1.Main = true;
  Command1.Deliberate = true;
  Command1.Click = [this] { startOnce(client_, [this] { Command1_Click(); }); };
}

void Form1::showAccepted(std::string_view guest) {
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    if (Label1[slot].Caption.get() == guest) green_[slot]->FillColor = kAccepted;
  }
}

void Form1::showDeclined(std::string_view guest) {
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    if (Label1[slot].Caption.get() == guest) red_[slot]->FillColor = kDeclined;
  }
}

void Form1::Command1_Click() {
  if (!connectedOrTell(client_)) return;
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    const std::string& guest = Label1[slot].Caption;
    if (green_[slot]->FillColor.get() == kAccepted && guest != "NONE") {
      client_.send(outbound::start(guest));
    }
  }
  frmMain& room = client_.form<frmMain>();
  const std::string command = room.Text2.Text;
  client_.form<Form4>().Show();
  room.Label7.Caption = kInGameStatus;
  client_.ports.processes.run(command, WindowStyle::maximizedFocus);
  client_.slots.unload(*this);
}

}  // namespace kelvaron
