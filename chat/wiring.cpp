// What the room's own controls and menu entries do; folders above wire theirs when it is made.
#include "chat/about_box.h"
#include "chat/colors.h"
#include "chat/main_window.h"
#include "chat/mentions.h"
#include "chat/radio.h"
#include "platform/text.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/connection.h"

namespace kelvaron {

void frmMain::wire() {
  txtinput.Change = [this] { txtinput_Change(); };
  txtinput.Click = [this] { txtinput.SelColor = colors::kSpeech; };
  txtinput.DblClick = [this] { txtinput.SelColor = colors::kSpeech; };
  txtinput.KeyDown = [this](int keyCode, int) { txtinput_KeyDown(keyCode); };
  txtinput.Complete = [this] { return txtinput_Complete(); };
  txtOutput.IsForUser = [this](std::string_view line) {
    std::string_view nick = Label1.Caption.get();
    if (nick.starts_with(kModeratorMark)) nick.remove_prefix(1);
    return isForUser(line, nick);
  };
  txtOutput.LinkClick = [this](const std::string& address) {
    client_.ports.application.showPage(address);
  };
  Image1.Click = [this] { Image1_Click(); };
  List1.MouseUp = [this](MouseButton button) { List1_MouseUp(button); };
  List1.DblClick = [this] { List1_DblClick(); };

  AnswerClock.Tick = [this] { AnswerClock_Tick(); };
  // It stands still while nothing is open.
  client_.lasting<AskedFor>().onAsked = [this] { AnswerClock.Enabled = true; };

  mnuConnect.Click = [this] { reconnect(client_); };
  mnuDisconnect.Click = [this] { disconnect(client_); };
  dconnect.Click = [this] { disconnect(client_); };
  mnuQuit.Click = [this] { quit(client_); };
  mnuPM.Click = [this] { mnuPM_Click(); };
  mnuAbout.Click = [this] { client_.form<frmAbout>().Show(); };
  wireRadio(client_, *this);
}

}  // namespace kelvaron
