// Receiving files from other users' machines.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "peer/transfer_receiver.h"
#include "platform/controls.h"
#include "platform/local_host.h"
#include "platform/progress_bar.h"

namespace kelvaron {

class Client;

/// The side that listens. One connection at a time delivers one file into the folder `received`;
/// while it lasts nobody else is heard (see transfer_receiver.h).
class Frm_Client : public Form {
 public:
  explicit Frm_Client(Client& client);

  Label Label1{*this, "Label1", pixels(16, 18, 120, 22), "Save File to:"};
  /// Shows where the file goes, and decides nothing.
  TextBox Txt_File{*this, "Txt_File", pixels(140, 14, 424, 30)};
  Label Lbl_FileName{*this, "Lbl_FileName", pixels(16, 56, 264, 22), "Filename: -"};
  Label Lbl_FileSize{*this, "Lbl_FileSize", pixels(292, 56, 272, 22), "Filesize: 0 kb"};
  Label Lbl_Complete{*this, "Lbl_Complete", pixels(16, 84, 264, 22), "Complete: 0%"};
  Label Lbl_Averages{*this, "Lbl_Averages", pixels(292, 84, 272, 22), "Average: 0 / KBps"};
  Label Lbl_Status{*this, "Lbl_Status", pixels(16, 112, 548, 22), "winsock State"};
  ProgressBar FileBar{*this, "FileBar", pixels(16, 142, 548, 22)};
  CommandButton Btn_Listen{*this, "Btn_Listen", pixels(16, 178, 160, 30), "Listen for file"};
  CommandButton Btn_Folder{*this, "Btn_Folder", pixels(296, 178, 144, 30), "Open folder"};
  CommandButton Command1{*this, "Command1", pixels(452, 178, 112, 30), "Close"};
  Timer Timer1{*this, "Timer1", 1000, true};

  Frame Fra_Advanced{*this, "Fra_Advanced", pixels(16, 220, 548, 94), "Advanced Settings"};
  Label Lbl_Port{Fra_Advanced, "Lbl_Port", pixels(16, 28, 144, 22), "Port to listen to:"};
  TextBox Txt_Port{Fra_Advanced, "Txt_Port", pixels(168, 24, 72, 28)};
  Label lbl_ExternalIP{Fra_Advanced, "lbl_ExternalIP", pixels(260, 28, 104, 22), "External IP:"};
  TextBox Txt_CurrentIP{Fra_Advanced, "Txt_CurrentIP", pixels(372, 24, 160, 28)};
  Label Lbl_Info{Fra_Advanced, "Lbl_Info", pixels(16, 60, 524, 22),
                 "(0 = free port, the port has to be the same in the server form)"};

  void Form_Load() override;
  void Form_Unload() override;

 private:
  void Btn_Listen_Click();
  void Timer1_Tick();

  void listen();
  void showStatus();
  void showHeader();
  void showProgress();
  void showLocalHost(const LocalHostAnswer& answer);
  std::string received(std::string_view name) const;

  Client& client_;
  TransferReceiver transfer_;
  std::unique_ptr<LocalHostLookUp> localHost_;
};

}  // namespace kelvaron
