#include "peer/file_sender.h"

#include <algorithm>

#include "peer/transfer.h"
#include "session/client.h"

namespace kelvaron {
namespace {

// Fault 75 for a file whose length the header can't tell.
std::int64_t lengthToAnnounce(const FileReader& file, const std::string& path) {
  const std::int64_t length = file.length();
  if (length <= kLongestFile) return length;
  throw Fault(fault_number::kPathAccess, "The file " + path + " is too long to be sent: it has " +
                                             std::to_string(length) + " bytes, and at most " +
                                             std::to_string(kLongestFile) + " can be sent.");
}

}  // namespace

Frm_Server::Frm_Server(Client& client)
    : Form({.name = "Frm_Server",
            .caption = "Kelvaron File Send",
            .width = 580 * kTwipsPerPixel,
            .height = 224 * kTwipsPerPixel}),
      client_(client),
      Winsock_Send(client.ports.sockets.makeSocket()) {
  Txt_File.Text = "C:\\";
  Txt_File.AccessibleName = "Selected file";
  Lbl_FileName.AccessibleName = "File name";
  FileBar.AccessibleName = "Progress";
  Txt_RemoteIP.Text = "127.0.0.1";
  Txt_RemoteIP.AccessibleName = "Address to connect to";
  Txt_Port.Text = "5050";
  Txt_Port.AccessibleName = "Port to connect to";
  Fra_Advanced.Visible = false;
  Command1.Cancel = true;

  Btn_Browse.Click = [this] { Btn_Browse_Click(); };
  Btn_Send.Click = [this] { Btn_Send_Click(); };
  Command1.Click = [this] { client_.slots.unload(*this); };
  Timer1.Tick = [this] { Timer1_Tick(); };
  waitLimit.Tick = [this] { timedOut(); };
  Winsock_Send->onConnect = [this] { client_.edge.run([this] { Winsock_Send_Connect(); }); };
  Winsock_Send->onSendComplete = [this] {
    client_.edge.run([this] { Winsock_Send_SendComplete(); });
  };
  Winsock_Send->onClose = [this] { client_.edge.run([this] { lost(); }); };
  Winsock_Send->onError = [this](int, const std::string&) { client_.edge.run([this] { lost(); }); };
  // Nothing is meant to come back; what does is dropped.
  Winsock_Send->onDataArrival = [this] { Winsock_Send->GetData(); };
}

void Frm_Server::Form_Unload() {
  stop();
  Timer1.Enabled = false;
  Winsock_Send->Close();
}

void Frm_Server::Btn_Browse_Click() {
  Dlg_Browser.ShowOpen(client_.ports.dialogs);
  // Any fault ends this without a word, as the dialog has shown the user what is there.
  static_cast<void>(FaultRule::stop().handle([&] {
    if (Dlg_Browser.FileName.empty()) return;
    Txt_File.Text = Dlg_Browser.FileName;
    const auto file = client_.ports.streams.open(Dlg_Browser.FileName);
    Lbl_FileSize.Caption = "Filesize: " + std::to_string(file->length());
    Lbl_FileName.Caption = Dlg_Browser.FileTitle;
  }));
}

void Frm_Server::Btn_Send_Click() {
  if (stage_ != Stage::idle) return;
  if (const auto fault = FaultRule::stop().handle([&] { begin(); })) {
    stop();
    client_.MsgBox(fault->what(), box_style::kCritical);
  }
}

void Frm_Server::begin() {
  Winsock_Send->Close();
  remotePort_ = portNumber(Txt_Port.Text);
  if (remotePort_ == 0) {
    client_.MsgBox("Select a Port first!");
    return;
  }
  // Looked at before anybody is bothered with a connection.
  file_ = client_.ports.streams.open(Txt_File.Text);
  lengthToAnnounce(*file_, Txt_File.Text);
  Winsock_Send->Connect(Txt_RemoteIP.Text, remotePort_);
  showStatus();
  waitFor(Stage::connecting);
}

void Frm_Server::Winsock_Send_Connect() {
  showStatus();
  if (stage_ != Stage::connecting) return;
  if (const auto fault = FaultRule::stop().handle([&] { announce(); })) {
    stop();
    client_.MsgBox(fault->what(), box_style::kCritical);
  }
}

void Frm_Server::announce() {
  size_ = lengthToAnnounce(*file_, Txt_File.Text);
  sent_ = 0;
  FileBar.Max = size_;
  FileBar.Value = 0;
  sendComplete = false;
  waitFor(Stage::announcing);
  Winsock_Send->SendData(transferHeader(size_, Lbl_FileName.Caption.get()));
}

void Frm_Server::Winsock_Send_SendComplete() {
  sendComplete = true;
  switch (stage_) {
    case Stage::announcing:
    case Stage::sending:
      if (const auto fault = FaultRule::stop().handle([&] { sendBlocks(); })) {
        stop();
        Winsock_Send->Close();
        client_.MsgBox(fault->what(), box_style::kCritical);
      }
      break;
    case Stage::draining:
      stop();
      Winsock_Send->Close();
      break;
    case Stage::idle:
    case Stage::connecting:
      break;
  }
}

void Frm_Server::sendBlocks() {
  if (stage_ == Stage::announcing) readBlock();
  for (int blocks = 1; sendComplete && !block_.empty(); ++blocks) {
    const auto length = static_cast<std::int64_t>(block_.size());
    sent_ += length;
    bytesThisTick += length;
    // What is sent last in a turn is reported in the next one.
    if (blocks < kBlocksPerTurn) {
      sendComplete = Winsock_Send->SendNow(block_);
    } else {
      Winsock_Send->SendData(block_);
      sendComplete = false;
    }
    readBlock();
  }
  showProgress();
  if (!block_.empty()) return waitFor(Stage::sending);
  // Without a limit: what is left is the system's to deliver.
  waitFor(Stage::draining);
  waitLimit.Enabled = false;
  if (sendComplete) Winsock_Send_SendComplete();
}

void Frm_Server::readBlock() {
  const std::int64_t left = size_ - sent_;
  block_.resize(static_cast<std::size_t>(std::min<std::int64_t>(left, kBlock)));
  if (file_->read(block_) == block_.size()) return;
  throw Fault(fault_number::kPathAccess,
              "The file " + Txt_File.Text.get() +
                  " became shorter while it was sent, so that the transfer was broken off.");
}

void Frm_Server::timedOut() {
  if (stage_ == Stage::idle) return;
  stop();
  client_.MsgBox("Timeout");
}

void Frm_Server::lost() {
  // Whoever does not answer may have no time yet: the attempt counts until its time is over.
  if (stage_ != Stage::connecting) stop();
}

void Frm_Server::stop() {
  stage_ = Stage::idle;
  waitLimit.Enabled = false;
  file_.reset();
  block_.clear();
}

void Frm_Server::waitFor(Stage stage) {
  stage_ = stage;
  // Off and on again begins the time anew.
  waitLimit.Enabled = false;
  waitLimit.Enabled = true;
}

void Frm_Server::showStatus() {
  Lbl_Status.Caption = std::to_string(stateNumber(Winsock_Send->State())) +
                       " to port: " + std::to_string(remotePort_);
}

void Frm_Server::showProgress() {
  FileBar.Value = sent_;
  Lbl_Complete.Caption = completeCaption(sent_, size_);
}

void Frm_Server::Timer1_Tick() {
  if (Lbl_Complete.Caption.get() == kWholeCaption) {
    Lbl_Complete.Caption = std::string(kDoneCaption);
    FileBar.Value = 0;
  }
  Lbl_Averages.Caption = averageCaption(bytesThisTick);
  bytesThisTick = 0;
}

}  // namespace kelvaron
