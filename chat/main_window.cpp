#include "chat/main_window.h"

#include "build_settings.h"
#include "chat/colors.h"
#include "chat/commands.h"
#include "chat/private_message.h"
#include "chat/resize/resize_forms.h"
#include "chat/user_list_entry.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/connection.h"
#include "session/login_window.h"

namespace kelvaron {

frmMain::frmMain(Client& client)
    : MainWindow({.name = "frmMain",
                  .caption = "Kelvaron " + std::string(build::kVersion),
                  .width = 960 * kTwipsPerPixel,
                  .height = 632 * kTwipsPerPixel}),
      client_(client) {
  look();
  wire();
}

void frmMain::look() {
  BackColor = colors::kBlack;
  Sizable = true;
  Image1.AccessibleName = "Kelvaron home page";
  Label3.ForeColor = colors::kWhite;
  Label3.Font_ = Font{.points = 18, .bold = true, .family = FontFamily::tahoma};
  for (Label* label : {&Label2, &Label5, &Label4}) {
    label->ForeColor = colors::kLabel;
    label->Alignment_ = Alignment::right;
  }
  Label1.ForeColor = colors::kValue;
  Label6.ForeColor = colors::kValue;
  Label7.ForeColor = colors::kStatus;
  Label1.AccessibleName = "Logged in as";
  Label6.AccessibleName = "Server";
  Label7.AccessibleName = "Status";

  Frame1.Visible = false;
  Frame1.ForeColor = colors::kBuffering;
  Label9.ForeColor = colors::kBufferingPercent;

  txtOutput.BackColor = colors::kBlack;
  txtOutput.AccessibleName = "Chat";
  txtinput.BackColor = colors::kBlack;
  showConnected(true);
  txtinput.AccessibleName = "Message";
  List1.BackColor = colors::kBlack;
  List1.AccessibleName = "Users";
  List1.CountedAs = "user";
  // Somebody who goes away or into a game between two rebuilds stays selected.
  List1.identity = [](std::string_view entry) { return std::string(nicknameOf(entry)); };
  Command2.Enabled = false;
  for (TextBox* scratch : {&Text1, &Text2}) {
    scratch->Visible = false;
    scratch->MultiLine = true;
  }
}

void frmMain::Form_Load() {
  version = "BETA";
  txtOutput.setSelColor(colors::kPlain);
  txtinput.SelColor = colors::kSpeech;
  Label1.Caption = client_.form<frmLogin>().txtUserName.Text.get();
  client_.ports.sound.play("boom");
}

void frmMain::Form_Unload() {
  client_.lasting<AskedFor>().onAsked = nullptr;
  leaveWithFarewell(client_);
}

void frmMain::showConnected(bool connected) {
  txtinput.Placeholder = connected ? "Message, /? for commands" : "Not connected";
  List1.ForeColor = connected ? colors::kUsers : colors::kUsersBefore;
}

void frmMain::radioFailed() {
  Timer1.Enabled = false;
  Frame1.Visible = false;
}

void frmMain::AnswerClock_Tick() {
  auto& asked = client_.lasting<AskedFor>();
  for (std::string& sentence : asked.takeSilences(client_)) hints.pass(std::move(sentence));
  AnswerClock.Enabled = asked.waits(client_);
}

void frmMain::Form_Resize() { client_.lasting<Resize_forms>().ResizeForm(*this); }

void frmMain::AppendChat(std::string_view text) {
  txtOutput.caretToEnd();
  txtOutput.insert(std::string(text) + "\r\n");
}

void frmMain::writePrivateMessage(std::string_view heading, std::string_view text) {
  txtOutput.caretToEnd();
  txtOutput.setSelColor(colors::kPrivateHeading);
  txtOutput.insert(heading);
  txtOutput.setSelColor(colors::kPrivateText);
  txtOutput.insert(std::string(text) + "\r\n");
  txtOutput.setSelColor(colors::kPlain);
  txtinput.SelColor = colors::kSpeech;
}

void frmMain::txtinput_Change() {
  txtinput.SelColor = colors::kSpeech;
  const std::string& text = txtinput.Text;
  txtinput.Warning =
      saysCommandAloud(text, *this)
          ? text.substr(0, text.find(' ')) + " is no command and will be said to everybody"
          : std::string();
  txtinput.SelStart = static_cast<int>(txtinput.Text.get().size());
}

void frmMain::txtinput_KeyDown(int keyCode) {
  if (keyCode == key_code::kEnter) enterPressed(client_, *this);
}

bool frmMain::txtinput_Complete() {
  const bool whole = isAboutEntry(txtinput.Text.get());
  std::vector<std::string_view> nicks;
  for (const std::string& entry : List1.entries()) {
    nicks.push_back(whole ? entry : nicknameOf(entry));
  }
  const auto caret = static_cast<std::size_t>(txtinput.SelStart);
  const auto line = completion_.next({txtinput.Text, caret}, nicks, commandWords());
  if (!line) return false;
  txtinput.Text = line->text;
  txtinput.SelStart = static_cast<int>(line->caret);
  return true;
}

void frmMain::Image1_Click() { client_.ports.application.showPage(std::string(build::kHomePage)); }

void frmMain::List1_MouseUp(MouseButton button) {
  if (button != MouseButton::right) {
    client_.ports.application.DoEvents();
    return;
  }
  mnuJoinGame.Enabled = hasTag(List1.Text(), kHostsCsTag);
  PopupMenu(mnuUser);
}

void frmMain::List1_DblClick() {
  if (refusesPrivateMessage()) return;
  SendPM& form = client_.form<SendPM>();
  form.Label2.Caption = List1.Text();
  form.Show();
}

void frmMain::mnuPM_Click() {
  if (refusesPrivateMessage()) return;
  client_.form<SendPM>().Show();
}

bool frmMain::refusesPrivateMessage() {
  if (!hasTag(List1.Text(), kInGameTag)) return false;
  client_.MsgBox(
      "You can not send a private message to a user that is currently in a game. Try again later");
  return true;
}

}  // namespace kelvaron
