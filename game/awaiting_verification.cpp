#include "game/awaiting_verification.h"

#include "chat/colors.h"
#include "chat/main_window.h"
#include "game/engine_start.h"
#include "game/in_game.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

// Of the words, each 7 to 1 or more against the form: the lamps' own red is too dark for text.
constexpr Color kAskedText{224, 226, 232};
constexpr Color kDeclinedText{255, 150, 150};

}  // namespace

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
    Label2[slot].Index = static_cast<int>(slot);
    Label2[slot].AccessibleName = player + "'s answer";
    seats_[slot]->Enabled = false;
  }
  // Enter behind the game form is not meant for this one.
  Command1.Main = true;
  Command1.Deliberate = true;
  Command1.Click = [this] { startOnce(client_, [this] { Command1_Click(); }); };
}

void Form1::tell(std::size_t slot, std::string_view answer, Color color) {
  Label2[slot].Caption = std::string(answer);
  Label2[slot].ForeColor = color;
  seats_[slot]->Enabled = !answer.empty();
}

void Form1::invite(const std::vector<std::string>& entries) {
  for (std::size_t slot = 0; slot < entries.size(); ++slot) Label1[slot].Caption = entries[slot];
  showAsked(0);
}

void Form1::showAsked(std::size_t guests) {
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    red_[slot]->FillColor = Shape::kUnlit;
    green_[slot]->FillColor = Shape::kUnlit;
    tell(slot, slot < guests ? "asked" : "", kAskedText);
  }
}

bool Form1::sits(std::string_view guest, std::size_t slot) const {
  return seats_[slot]->Enabled && Label1[slot].Caption.get() == guest;
}

void Form1::showAccepted(std::string_view guest) {
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    if (!sits(guest, slot)) continue;
    green_[slot]->FillColor = kAccepted;
    tell(slot, "accepted", kAccepted);
  }
}

void Form1::showDeclined(std::string_view guest) {
  for (std::size_t slot = 0; slot < kSlots; ++slot) {
    if (!sits(guest, slot)) continue;
    red_[slot]->FillColor = kDeclined;
    tell(slot, "declined", kDeclinedText);
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
