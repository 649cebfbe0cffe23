#include "chat/private_message.h"

#include "chat/colors.h"
#include "chat/main_window.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {

SendPM::SendPM(Client& client)
    : Form({.name = "SendPM",
            .caption = "Private Message",
            .width = 480 * kTwipsPerPixel,
            .height = 142 * kTwipsPerPixel}),
      client_(client) {
  Label2.ForeColor = colors::kUsers;
  Text1.AccessibleName = "Private message";
  Command2.Cancel = true;
  Command1.Main = true;
  Command1.Click = [this] { Command1_Click(); };
  Command2.Click = [this] { Command2_Click(); };
}

void SendPM::Form_Load() {
  Label2.Caption = client_.form<frmMain>().List1.Text();
  Caption = "Private Message to : " + Label2.Caption.get();
}

void SendPM::Command1_Click() {
  const std::string& target = Label2.Caption;
  const std::string& text = Text1.Text;
  // Without a connection nothing is sent or echoed, and the text stays.
  if (!sendOrTell(client_, outbound::privateMessage(target, text, client_.UserName))) return;
  client_.form<frmMain>().writePrivateMessage("Private Message To " + target + ": ", text);
  Text1.Text = "";
  client_.slots.unload(*this);
}

void SendPM::Command2_Click() {
  Text1.Text = "";
  Visible = false;
}

}  // namespace kelvaron
