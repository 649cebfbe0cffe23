#include "session/client.h"

#include <algorithm>
#include <utility>

#include "session/connection.h"
#include "session/login_window.h"
#include "session/main_window.h"

namespace kelvaron {
namespace {

// A line that the network cut may take this long to be completed before it counts as arrived.
constexpr std::chrono::milliseconds kUnfinishedLineLimit{200};

}  // namespace

Client::Client(Edge& atEdge, const Ports& usedPorts, std::span<const InboundRow> inbound,
               const MainWindowSlot& mainWindow)
    : edge(atEdge),
      ports(usedPorts),
      inbound_(inbound),
      mainWindow_(mainWindow),
      sckClient_(usedPorts.sockets.makeSocket()) {
  sckClient_->HoldBackUnfinishedLine(kUnfinishedLineLimit);
  sckClient_->onConnect = [this] { edge.run([this] { sckClient_Connect(*this); }); };
  sckClient_->onDataArrival = [this] { edge.run([this] { arrival(); }); };
  sckClient_->onClose = [this] {
    edge.run([this] {
      if (handlingArrival_) {
        closeWaits_ = true;
      } else {
        sckClient_Close(*this);
      }
    });
  };
  sckClient_->onError = [this](int number, const std::string& description) {
    edge.run([&] { sckClient_Error(*this, number, description); });
  };
  ports.processes.onTrouble = [this](const std::string& text) {
    edge.run([&] { MsgBox(text, box_style::kCritical); });
  };
  ports.player.onTrouble = [this](const std::string& text) {
    edge.run([&] { MsgBox(text, box_style::kExclamation); });
  };
  edge.onFault = [this](const Fault& fault) { MsgBox(fault.what(), box_style::kCritical); };
  edge.onIdle = [this] { slots.collect(); };
}

Client::~Client() {
  ports.processes.onTrouble = nullptr;
  ports.player.onTrouble = nullptr;
}

bool Client::mainWindowShown() const {
  const MainWindow* window = mainWindow_.loaded(*this);
  return window != nullptr && window->Visible;
}

void Client::MsgBox(const std::string& text, int style, const std::string& boxTitle) {
  ports.dialogs.MsgBox(text, style, boxTitle.empty() ? title : boxTitle);
}

void Client::arrival() {
  if (std::exchange(handlingArrival_, true)) {
    arrivalWaits_ = true;
    return;
  }
  struct Done {
    bool& handling;
    ~Done() { handling = false; }
  } const done{handlingArrival_};

  do {
    arrivalWaits_ = false;
    handleArrival(*this, sckClient_->GetData(), inbound_);
  } while (arrivalWaits_);
  // A handler may have closed the connection from this side, which makes the other side's close
  // nobody's business.
  if (std::exchange(closeWaits_, false) && sckClient_->State() == SocketState::peerClosing) {
    sckClient_Close(*this);
  }
}

void start(Client& client) {
  client.edge.run([&] { client.form<frmLogin>().Show(); });
}

}  // namespace kelvaron
