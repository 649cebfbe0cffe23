#include "peer/file_receiver.h"

#include "session/client.h"

namespace kelvaron {

Frm_Client::Frm_Client(Client& client)
    : Form({.name = "Frm_Client",
            .caption = "Kelvaron File Server",
            .width = 580 * kTwipsPerPixel,
            .height = 224 * kTwipsPerPixel}),
      client_(client),
      transfer_(client.ports.sockets, client.ports.streams, client.edge, client.now) {
  Txt_File.Text = "C:\\";
  Txt_File.Locked = true;
  Txt_File.AccessibleName = "Save file to";
  FileBar.AccessibleName = "Progress";
  Lbl_FileSize.GroupsDigits = true;
  Btn_Listen.Visible = false;
  Txt_Port.Text = "5050";
  Txt_Port.AccessibleName = "Port to listen to";
  Txt_CurrentIP.AccessibleName = "External IP";
  Fra_Advanced.Visible = false;
  Command1.Cancel = true;

  Btn_Listen.Click = [this] { Btn_Listen_Click(); };
  Btn_Folder.Click = [this] { client_.ports.application.showFolder(received("")); };
  Command1.Click = [this] { client_.slots.unload(*this); };
  Timer1.Tick = [this] { Timer1_Tick(); };
  transfer_.onCallers = [this] { showStatus(); };
  transfer_.onHeader = [this] { showHeader(); };
  transfer_.onProgress = [this] { showProgress(); };
  transfer_.onEnd = [this] { showStatus(); };
  transfer_.onFault = [this](const Fault& fault) {
    showStatus();
    client_.MsgBox(fault.what(), box_style::kCritical);
  };
}

void Frm_Client::Form_Load() {
  Txt_File.Text = received("");
  localHost_ = client_.ports.localHost.localHostAddress([this](const LocalHostAnswer& answer) {
    client_.edge.runUnasked([&] { showLocalHost(answer); });
  });
  // Last, as it may open a box, which the user closes when he likes.
  Btn_Listen.Click();
}

void Frm_Client::Form_Unload() {
  Timer1.Enabled = false;
  localHost_.reset();
  transfer_.close();
}

void Frm_Client::Btn_Listen_Click() {
  if (const auto fault = FaultRule::stop().handle([&] { listen(); })) {
    client_.MsgBox(fault->what(), box_style::kCritical);
  }
}

void Frm_Client::listen() {
  transfer_.listen(portNumber(Txt_Port.Text));
  showStatus();
}

void Frm_Client::showStatus() {
  Lbl_Status.Caption = std::to_string(stateNumber(transfer_.socketState())) +
                       " on port: " + std::to_string(transfer_.port());
}

void Frm_Client::showHeader() {
  FileBar.Max = transfer_.header().size();
  FileBar.Value = 0;
  Lbl_FileSize.Caption = "File Size: " + transfer_.header().sizeText();
  Txt_File.Text = received(transfer_.header().name());
  // Its end, which is the name, is what shows.
  Txt_File.SelStart = static_cast<int>(Txt_File.Text.get().size());
}

void Frm_Client::showProgress() {
  FileBar.Value = transfer_.received();
  Lbl_Complete.Caption = completeCaption(transfer_.received(), transfer_.header().size());
}

void Frm_Client::showLocalHost(const LocalHostAnswer& answer) {
  if (answer.nameError != 0) {
    client_.MsgBox("Windows Socket Error  " + std::to_string(answer.nameError));
  } else if (answer.address.empty()) {
    client_.MsgBox("Winsock.dll error.");
  } else {
    Txt_CurrentIP.Text = answer.address;
  }
}

std::string Frm_Client::received(std::string_view name) const {
  return client_.ports.files.folder() + "/received/" + std::string(name);
}

void Frm_Client::Timer1_Tick() {
  if (transfer_.letSilentGo()) Btn_Listen.Click();
  if (Lbl_Complete.Caption.get() == kWholeCaption) {
    Lbl_Complete.Caption = std::string(kDoneCaption);
    Btn_Listen.Click();
    FileBar.Value = 0;
  }
  Lbl_Averages.Caption = averageCaption(transfer_.takeByteCount());
}

}  // namespace kelvaron
