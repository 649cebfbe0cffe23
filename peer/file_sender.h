// Sending a file to another user's machine.
#pragma once

#include <cstdint>

#include "peer/transfer_sender.h"
#include "platform/common_dialog.h"
#include "platform/controls.h"
#include "platform/progress_bar.h"

namespace kelvaron {

class Client;

/// The file that the user has dropped on somebody, until that one's address is there.
struct DroppedFile {
  std::string path;
};

/// The side that connects and sends. It stays loaded, hidden or shown, until it is closed.
class Frm_Server : public Form {
 public:
  /// Longest wait for the connection, and for the system to take the header or a block.
  static constexpr int kLongestWaitMs = 30'000;

  explicit Frm_Server(Client& client);

  Label Label1{*this, "Label1", pixels(16, 18, 120, 22), "Selected File:"};
  TextBox Txt_File{*this, "Txt_File", pixels(140, 14, 300, 30)};
  CommandButton Btn_Browse{*this, "Btn_Browse", pixels(452, 14, 112, 30), "Browse"};
  Label Label4{*this, "Label4", pixels(16, 56, 120, 22), "Filename:"};
  Label Lbl_FileName{*this, "Lbl_FileName", pixels(140, 56, 424, 22), "-"};
  Label Lbl_FileSize{*this, "Lbl_FileSize", pixels(16, 84, 264, 22), "Filesize: 0 kb"};
  Label Lbl_Complete{*this, "Lbl_Complete", pixels(292, 84, 272, 22), "Complete: 0%"};
  Label Lbl_Averages{*this, "Lbl_Averages", pixels(16, 112, 264, 22), "Average: 0 / KBps"};
  Label Lbl_Status{*this, "Lbl_Status", pixels(292, 112, 272, 22), "winsock State"};
  ProgressBar FileBar{*this, "FileBar", pixels(16, 142, 548, 22)};
  CommandButton Btn_Send{*this, "Btn_Send", pixels(328, 178, 112, 30), "Send"};
  CommandButton Command1{*this, "Command1", pixels(452, 178, 112, 30), "Close"};
  Timer Timer1{*this, "Timer1", 1000, true};
  /// Runs while something is waited for.
  Timer waitLimit{*this, "waitLimit", kLongestWaitMs, false};

  Frame Fra_Advanced{*this, "Fra_Advanced", pixels(16, 220, 548, 120), "Advanced Settings"};
  Label Lbl_Port{Fra_Advanced, "Lbl_Port", pixels(16, 28, 180, 22), "Port/IP to connect to:"};
  TextBox Txt_Port{Fra_Advanced, "Txt_Port", pixels(204, 24, 72, 28)};
  TextBox Txt_RemoteIP{Fra_Advanced, "Txt_RemoteIP", pixels(284, 24, 180, 28)};
  Label Lbl_Info{Fra_Advanced, "Lbl_Info", pixels(16, 60, 516, 22),
                 "(the port has to be the same in the client form)"};
  Label Label3{Fra_Advanced, "Label3", pixels(16, 86, 516, 22),
               "(the IP adress you connect to: local 127.0.0.1)"};

  void Form_Unload() override;

  /// What is to be sent next. A file that isn't there leaves size and name as they are.
  void choose(const std::string& path);

  /// Whether a transfer is under way.
  bool transferring() const { return transfer_.running(); }

 private:
  void Btn_Browse_Click();
  void Btn_Send_Click();
  void Timer1_Tick();

  void begin();
  void timedOut();
  void showStatus();
  void showProgress();

  Client& client_;
  CommonDialog Dlg_Browser;
  TransferSender transfer_;
  std::uint16_t remotePort_ = 0;
};

}  // namespace kelvaron
