#include "game/final_chance.h"

#include <utility>

#include "chat/main_window.h"
#include "game/engine_start.h"
#include "game/in_game.h"
#include "session/client.h"

namespace kelvaron {
namespace {

constexpr const char* kDemoPrompt = "Enter Demo Name Here : NO Extension";

}  // namespace

Form3::Form3(Client& client)
    : Form({.name = "Form3",
            .caption = "Final chance to decline a game.",
            .width = 600 * kTwipsPerPixel,
            .height = 302 * kTwipsPerPixel}),
      client_(client) {
  Label1.WordWrap = true;
  Text1.MultiLine = true;
  Text1.Locked = true;
  Text1.AccessibleName = "Command";
  Text2.Text = kDemoPrompt;
  Text2.Visible = false;
  Text2.AccessibleName = "Demo name";
  Command2.Cancel = true;
  Check1.MouseUp = [this](MouseButton) { Check1_MouseUp(); };
  Command1.Main = true;
  Command1.Click = [this] { Command1_Click(); };
  Command2.Click = [this] { client_.slots.unload(*this); };
}

void Form3::Form_Load() { show(client_.lasting<PendingOffers>().latest); }

// Started or backed out of: what was accepted is over.
void Form3::Form_Unload() { client_.lasting<PendingOffers>().accepted.reset(); }

void Form3::show(const PendingOffer& offer) {
  shown_ = offer;
  Text1.Text = offer.command;
}

void Form3::offerChanged() {
  const PendingOffer& latest = client_.lasting<PendingOffers>().latest;
  changed_ = changed_ || latest.command != shown_.command;
  show(latest);
}

void Form3::Check1_MouseUp() {
  if (Check1.Value == 1) {
    Text2.Visible = true;
    return;
  }
  Text2.Text = kDemoPrompt;
  Text2.SetFocus();
  Text2.Visible = false;
}

void Form3::Command1_Click() {
  startOnce(client_, [this] { start(); });
}

void Form3::start() {
  // The answer to a question counts for the command that it was asked about.
  if (changeTold() || refused() || changeTold()) return;
  // What the user has seen, whatever arrives while pending events run.
  std::string command = Text1.Text;
  if (Check1.Value == 1) {
    command += " -record " + client_.ports.files.folder() + "\\" + Text2.Text.get();
  }
  client_.form<Form4>().Show();
  client_.ports.processes.run(command, WindowStyle::maximizedFocus);
  client_.slots.unload(*this);
}

bool Form3::changeTold() {
  if (!std::exchange(changed_, false)) return false;
  client_.MsgBox(
      "Another offer has changed the command, so nothing was started. Please look at the command "
      "that is shown now, and press OK again if you want to start it.",
      box_style::kExclamation);
  return true;
}

// Asks about what the user would not expect. Whether the answer was No.
bool Form3::refused() {
  auto& offers = client_.lasting<PendingOffers>();
  const bool accepted = offers.isAccepted(shown_);
  std::string remarks = shown_.unusual;
  if (!accepted) {
    remarks += "You have not accepted this game, which \"" + shown_.host + "\" offers at \"" +
               shown_.address + "\".\r\n";
    if (offers.accepted)
      remarks += "You have accepted that of \"" + offers.accepted->host + "\".\r\n";
  }
  if (remarks.empty() || client_.confirm("There is something unusual about this game:\r\n\r\n" +
                                         remarks + "\r\nStart it all the same?")) {
    return false;
  }
  // Back to what the user has agreed to, if nothing else has come meanwhile.
  if (!accepted && offers.accepted && !changed_) {
    offers.latest = *offers.accepted;
    client_.form<frmMain>().Text1.Text = offers.latest.command;
    show(offers.latest);
  }
  return true;
}

}  // namespace kelvaron
