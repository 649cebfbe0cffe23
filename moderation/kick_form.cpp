#include "moderation/kick_form.h"

#include "chat/colors.h"
#include "chat/main_window.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {

frmkick::frmkick(Client& client)
    : Form({.name = "frmkick",
            .caption = "User Kick",
            .width = 560 * kTwipsPerPixel,
            .height = 280 * kTwipsPerPixel}),
      client_(client) {
  Text1.PasswordChar = '\xA4';
  Label3.ForeColor = colors::kWarning;
  Label3.Font_ = Font{.bold = true};
  Label3.WordWrap = true;
  Command1.Main = true;
  Command2.Cancel = true;
  Command1.Click = [this] { Command1_Click(); };
  Command2.Click = [this] { Command2_Click(); };
}

void frmkick::Form_Load() {
  for (const std::string& entry : client_.form<frmMain>().List1.entries()) Combo1.AddItem(entry);
}

void frmkick::Command1_Click() {
  if (sendOrTell(client_, outbound::theKick(client_.UserName, Combo1.Text.get(), Text1.Text.get(),
                                            Text2.Text.get()))) {
    client_.slots.unload(*this);
  }
}

void frmkick::Command2_Click() { client_.slots.unload(*this); }

}  // namespace kelvaron
