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
  Command1.Click = [this] { Command1_Click(); };
  Command2.Click = [this] { client_.slots.unload(*this); };
}

void Form3::Form_Load() { Text1.Text = client_.form<frmMain>().Text1.Text.get(); }

void Form3::commandChanged() {
  const std::string& command = client_.form<frmMain>().Text1.Text;
  if (Text1.Text.get() == command) return;
  Text1.Text = command;
  changed_ = true;
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
  if (changeTold() || unusualRefused() || changeTold()) return;
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

bool Form3::unusualRefused() {
  const std::string& unusual = client_.form<frmMain>().Text1.Tag;
  if (unusual.empty()) return false;
  return !client_.confirm("There is something unusual about this game:\r\n\r\n" + unusual +
                          "\r\nStart it all the same?");
}

}  // namespace kelvaron
