// The room: chat view, input line, user list, status labels and menus.
#pragma once

#include <string>
#include <string_view>

#include "build_settings.h"
#include "chat/completion.h"
#include "chat/hints.h"
#include "platform/controls.h"
#include "platform/list_box.h"
#include "platform/menu.h"
#include "session/main_window.h"

namespace kelvaron {

class Client;

class frmMain : public MainWindow {
 public:
  explicit frmMain(Client& client);

  // The head: logo, version mark, who and where the user is, the radio's buffering display.
  Image Image1{*this, "Image1", pixels(14, 12, 300, 48), "logo"};
  Label Label3{*this, "Label3", pixels(326, 18, 54, 36), build::kVersion};
  Label Label2{*this, "Label2", pixels(400, 8, 150, 20), "Logged in as:"};
  Label Label1{*this, "Label1", pixels(558, 8, 220, 20), ""};
  Label Label5{*this, "Label5", pixels(400, 28, 150, 20), "Server connected to :"};
  Label Label6{*this, "Label6", pixels(558, 28, 220, 20), ""};
  Label Label4{*this, "Label4", pixels(400, 48, 150, 20), "Status:"};
  Label Label7{*this, "Label7", pixels(558, 48, 220, 20), "Ready To Play"};
  Frame Frame1{*this, "Frame1", pixels(786, 6, 160, 62), "Buffering"};
  Label Label9{Frame1, "Label9", pixels(12, 26, 136, 24), ""};

  // The room itself.
  RichTextBox txtOutput{*this, "txtOutput", pixels(14, 76, 712, 500)};
  RichTextLine txtinput{*this, "txtinput", pixels(14, 586, 712, 32)};
  ListBox List1{*this, "List1", pixels(738, 76, 208, 462), true, ListBox::Selection::several};
  CommandButton Command1{*this, "Command1", pixels(738, 548, 208, 32), "Request A Game"};
  CommandButton Command2{*this, "Command2", pixels(738, 586, 208, 32), "Return from CS"};

  // Never seen: the clocks of hints and of questions without an answer, the radio's timer, and the
  // commands that start a game as guest and as host.
  Timer HintClock{*this, "HintClock", 0, false};
  Timer AnswerClock{*this, "AnswerClock", 1'000, false};
  Timer Timer1{*this, "Timer1", 500, false};
  TextBox Text1{*this, "Text1", pixels(0, 0, 0, 0)};
  TextBox Text2{*this, "Text2", pixels(0, 0, 0, 0)};

  using State = MenuItem::State;
  MenuItem tools{*this, "tools", "Tools"};
  MenuItem mnuConnect{tools, "mnuConnect", "Connect"};
  MenuItem mnuDisconnect{tools, "mnuDisconnect", "Disconnect"};
  MenuItem fserv{tools, "fserv", "File Server"};
  MenuItem sepbar2{tools, "sepbar2", "-"};
  MenuItem mnuExpandConfig{tools, "mnuExpandConfig", "Config"};
  MenuItem mnuConfig{mnuExpandConfig, "mnuConfig", "Configure Games"};
  MenuItem mnuEditProfile{mnuExpandConfig, "mnuEditProfile", "Edit Profile"};
  MenuItem sepbar5{tools, "sepbar5", "-"};
  MenuItem mnuQuit{tools, "mnuQuit", "Quit"};

  /// The pop-up menu of the user list.
  MenuItem mnuUser{*this, "mnuUser", "User", State::hidden};
  MenuItem mnuPing{mnuUser, "mnuPing", "Ping User"};
  MenuItem mnuGetProfile{mnuUser, "mnuGetProfile", "Get Profile"};
  MenuItem mnuPM{mnuUser, "mnuPM", "Private Message"};
  MenuItem mnuSendFile{mnuUser, "mnuSendFile", "Send File"};
  MenuItem mnuJoinGame{mnuUser, "mnuJoinGame", "Join CSDOOM Game"};

  MenuItem cn{*this, "cn", "Connection", State::hidden};
  MenuItem dconnect{cn, "dconnect", "Disconnect"};
  MenuItem cnect{cn, "cnect", "Connect"};

  MenuItem games{*this, "games", "Games"};
  MenuItem mnuLaunchCsServer{games, "mnuLaunchCsServer", "Launch CSDOOM Server"};

  MenuItem musictoplay{*this, "musictoplay", "Radio"};
  MenuItem stopplay{musictoplay, "stopplay", "Stop"};
  MenuItem stationsenu{musictoplay, "stationsenu", "Stations"};
  MenuItem kkrzplay{stationsenu, "kkrzplay", "Z100 (Top 40 / Dance)"};
  MenuItem KSHE95{stationsenu, "KSHE95", "KSHE 95 (Rock)"};
  MenuItem kwjjplay{stationsenu, "kwjjplay", "KWJJ (Country)"};
  MenuItem volume2{musictoplay, "volume2", "Volume"};

  MenuItem mnuHelp{*this, "mnuHelp", "Help"};
  MenuItem mnuAbout{mnuHelp, "mnuAbout", "About Kelvaron"};
  MenuItem sepbar3{mnuHelp, "sepbar3", "-", State::hidden};
  MenuItem mnuInternet{mnuHelp, "mnuInternet", "Internet", State::hidden};
  MenuItem mnuCheckUpdates{mnuInternet, "mnuCheckUpdates", "Check for updates", State::greyed};
  MenuItem mnuVisitHomepage{mnuInternet, "mnuVisitHomepage", "Visit Kelvaron homepage"};
  MenuItem sepbar4{mnuHelp, "sepbar4", "-"};
  MenuItem mnuGetOP{mnuHelp, "mnuGetOP", "Request Operator Status"};
  MenuItem mnuOpCommands{mnuHelp, "mnuOpCommands", "Operator Commands"};
  MenuItem mnuKick{mnuOpCommands, "mnuKick", "Kick User"};
  MenuItem mnuBan{mnuOpCommands, "mnuBan", "Ban User", State::hidden};
  MenuItem mnuGetIP{mnuOpCommands, "mnuGetIP", "Get users IP"};
  MenuItem mnuSendServerMSG{mnuOpCommands, "mnuSendServerMSG", "Send Server message",
                            State::hidden};

  Hints hints{txtOutput, HintClock};

  /// What a profile answer names as the version.
  std::string version;

  /// A line at the end of the chat view in the colour in force there.
  void AppendChat(std::string_view text);
  /// A private message that went out, at the end of the chat view.
  void writePrivateMessage(std::string_view heading, std::string_view text);

  void Form_Load() override;
  void Form_Unload() override;
  void Form_Resize() override;

  Label& shownName() override { return Label1; }
  Label& serverLocation() override { return Label6; }
  RichTextBox& output() override { return txtOutput; }
  ListBox& users() override { return List1; }
  void showConnected(bool connected) override;
  void radioFailed() override;

 private:
  void look();
  void wire();

  void txtinput_Change();
  void txtinput_KeyDown(int keyCode);
  bool txtinput_Complete();
  void Image1_Click();
  void List1_MouseUp(MouseButton button);
  void List1_DblClick();
  void mnuPM_Click();
  void AnswerClock_Tick();
  bool refusesPrivateMessage();

  Client& client_;
  Completion completion_;
};

}  // namespace kelvaron
