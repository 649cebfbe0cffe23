#include "peer/file_sender.h"

#include "peer/transfer.h"
#include "session/client.h"

namespace kelvaron {
Frm_Server::Frm_Server(Client& client)
    : Form({.name = "Frm_Server",
            .caption = "Kelvaron File Send",
            .width = 580 * kTwipsPerPixel,
            .height = 224 * kTwipsPerPixel}),
      client_(client),
      transfer_(client.ports.sockets, client.ports.streams, client.edge) {
  Txt_File.Text = "C:\\";
  Txt_File.AccessibleName = "Selected file";
  Lbl_FileName.AccessibleName = "File name";
  Lbl_FileSize.GroupsDigits = true;
  FileBar.AccessibleName = "Progress";
  Txt_RemoteIP.Text = "127.0.0.1";
  Txt_RemoteIP.AccessibleName = "Address to connect to";
  Txt_Port.Text = "5050";
  Txt_Port.AccessibleName = "Port to connect to";
  Fra_Advanced.Visible = false;
  Command1.Cancel = true;

  Btn_Browse.Click = [this] { Btn_Browse_Click(); };
  Btn_Send.Main = true;
  Btn_Send.Click = [this] { Btn_Send_Click(); };
  Command1.Click = [this] { client_.slots.unload(*this); };
  Timer1.Tick = [this] { Timer1_Tick(); };
  waitLimit.Tick = [this] { timedOut(); };
  transfer_.onConnect = [this] { showStatus(); };
  transfer_.onProgress = [this] { showProgress(); };
  transfer_.onWait = [this](bool limited) {
    // Off and on again begins the time anew.
    waitLimit.Enabled = false;
    waitLimit.Enabled = limited;
  };
  transfer_.onFault = [this](const Fault& fault) {
    client_.MsgBox(fault.what(), box_style::kCritical);
  };
}

void Frm_Server::Form_Unload() {
  transfer_.close();
  Timer1.Enabled = false;
}

void Frm_Server::Btn_Browse_Click() {
  Dlg_Browser.ShowOpen(client_.ports.dialogs);
  if (!Dlg_Browser.FileName.empty()) choose(Dlg_Browser.FileName);
}

void Frm_Server::choose(const std::string& path) {
  // Any fault ends this without a word, as the user has seen what is there.
  static_cast<void>(FaultRule::stop().handle([&] {
    Txt_File.Text = path;
    const auto file = client_.ports.streams.open(path);
    Lbl_FileSize.Caption = "Filesize: " + std::to_string(file->length());
    Lbl_FileName.Caption = nameWithoutFolder(path);
  }));
}

void Frm_Server::Btn_Send_Click() {
  if (transferring()) return;
  if (const auto fault = FaultRule::stop().handle([&] { begin(); })) {
    client_.MsgBox(fault->what(), box_style::kCritical);
  }
}

void Frm_Server::begin() {
  transfer_.close();
  remotePort_ = portNumber(Txt_Port.Text);
  if (remotePort_ == 0) {
    client_.MsgBox("Select a Port first!");
    return;
  }
  // A path that was typed goes out under its own name too.
  const std::string name = nameWithoutFolder(Txt_File.Text);
  transfer_.begin(Txt_File.Text, name, Txt_RemoteIP.Text, remotePort_);
  Lbl_FileName.Caption = name;
  Lbl_FileSize.Caption = "Filesize: " + std::to_string(transfer_.size());
  FileBar.Max = transfer_.size();
  FileBar.Value = 0;
  showStatus();
}

void Frm_Server::timedOut() {
  if (!transferring()) return;
  transfer_.giveUp();
  client_.MsgBox("Timeout");
}

void Frm_Server::showStatus() {
  Lbl_Status.Caption = std::to_string(stateNumber(transfer_.socketState())) +
                       " to port: " + std::to_string(remotePort_);
}

void Frm_Server::showProgress() {
  FileBar.Value = transfer_.sent();
  Lbl_Complete.Caption = completeCaption(transfer_.sent(), transfer_.size());
}

void Frm_Server::Timer1_Tick() {
  if (Lbl_Complete.Caption.get() == kWholeCaption) {
    Lbl_Complete.Caption = std::string(kDoneCaption);
    FileBar.Value = 0;
  }
  Lbl_Averages.Caption = averageCaption(transfer_.takeByteCount());
}

}  // namespace kelvaron
