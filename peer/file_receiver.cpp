#include "peer/file_receiver.h"

#include <utility>

#include "session/client.h"

namespace kelvaron {

Frm_Client::Frm_Client(Client& client)
    : Form({.name = "Frm_Client",
            .caption = "Kelvaron File Server",
            .width = 580 * kTwipsPerPixel,
            .height = 224 * kTwipsPerPixel}),
      client_(client),
      Winsock_Receive(client.ports.sockets.makeSocket()) {
  Txt_File.Text = "C:\\";
  Txt_File.Locked = true;
  Txt_File.AccessibleName = "Save file to";
  FileBar.AccessibleName = "Progress";
  Btn_Listen.Visible = false;
  Txt_Port.Text = "5050";
  Txt_Port.AccessibleName = "Port to listen to";
  Txt_CurrentIP.AccessibleName = "External IP";
  Fra_Advanced.Visible = false;
  Command1.Cancel = true;

  Btn_Listen.Click = [this] { Btn_Listen_Click(); };
  Command1.Click = [this] { client_.slots.unload(*this); };
  Timer1.Tick = [this] { Timer1_Tick(); };
  Winsock_Receive->onConnectionRequest = [this](int id) {
    client_.edge.run([this, id] { Winsock_Receive_ConnectionRequest(id); });
  };
  Winsock_Receive->onDataArrival = [this] {
    client_.edge.run([this] { Winsock_Receive_DataArrival(); });
  };
  Winsock_Receive->onClose = [this] { client_.edge.run([this] { endConnection(); }); };
  Winsock_Receive->onError = [this](int, const std::string&) {
    client_.edge.run([this] { endConnection(); });
  };
}

void Frm_Client::Form_Load() {
  Txt_File.Text = received("");
  localHost_ = client_.ports.localHost.localHostAddress(
      [this](const LocalHostAnswer& answer) { client_.edge.run([&] { showLocalHost(answer); }); });
  // Last, as it may open a box, which the user closes when he likes.
  Btn_Listen.Click();
}

void Frm_Client::Form_Unload() {
  Timer1.Enabled = false;
  localHost_.reset();
  endConnection();
}

void Frm_Client::Btn_Listen_Click() {
  if (const auto fault = FaultRule::stop().handle([&] { listen(); })) {
    client_.MsgBox(fault->what(), box_style::kCritical);
  }
}

void Frm_Client::listen() {
  endConnection();
  Winsock_Receive->Listen(portNumber(Txt_Port.Text));
  Lbl_Status.Caption = std::to_string(stateNumber(Winsock_Receive->State())) +
                       " on port: " + std::to_string(Winsock_Receive->LocalPort());
}

void Frm_Client::Winsock_Receive_ConnectionRequest(int requestId) {
  endConnection();
  Winsock_Receive->Accept(requestId);
}

void Frm_Client::Winsock_Receive_DataArrival() {
  const std::string arrival = Winsock_Receive->GetData();
  if (const auto fault = FaultRule::stop().handle([&] { take(arrival); })) {
    endConnection();
    client_.MsgBox(fault->what(), box_style::kCritical);
  }
}

void Frm_Client::take(std::string_view arrival) {
  if (stage_ == Stage::header) {
    const HeaderReader::Outcome outcome = header_.take(arrival);
    // Whoever sends anything else is not heard any further, and the next one may come.
    if (outcome == HeaderReader::Outcome::refused) return Btn_Listen.Click();
    if (outcome == HeaderReader::Outcome::unfinished) return;
    begin();
  }
  if (stage_ == Stage::content) addContent(arrival);
}

void Frm_Client::begin() {
  FileBar.Max = header_.size();
  FileBar.Value = 0;
  Lbl_FileSize.Caption = "File Size: " + header_.sizeText();
  Txt_File.Text = received(header_.name());
  file_ = client_.ports.streams.receive(header_.name());
  stage_ = Stage::content;
}

void Frm_Client::addContent(std::string_view bytes) {
  // What goes beyond the announced size is dropped.
  bytes = bytes.substr(0, static_cast<std::size_t>(header_.size() - got_));
  if (bytes.empty() && header_.size() > 0) return;
  file_->write(bytes);
  const auto count = static_cast<std::int64_t>(bytes.size());
  got_ += count;
  bytesThisTick += count;
  if (got_ == header_.size()) {
    stage_ = Stage::complete;
    std::exchange(file_, nullptr)->keep();
  }
  FileBar.Value = got_;
  Lbl_Complete.Caption = completeCaption(got_, header_.size());
}

void Frm_Client::endConnection() {
  Winsock_Receive->Close();
  file_.reset();
  header_ = HeaderReader();
  got_ = 0;
  stage_ = Stage::header;
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
  if (Lbl_Complete.Caption.get() == kWholeCaption) {
    Lbl_Complete.Caption = std::string(kDoneCaption);
    Btn_Listen.Click();
    FileBar.Value = 0;
  }
  Lbl_Averages.Caption = averageCaption(bytesThisTick);
  bytesThisTick = 0;
}

}  // namespace kelvaron
