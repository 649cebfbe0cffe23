#include "session/client.h"

#include <algorithm>
#include <utility>

#include "base/scope_exit.h"
#include "session/connection.h"
#include "session/login_window.h"
#include "session/main_window.h"

namespace kelvaron {
namespace {

// A line that the network cut may take this long to be completed before it counts as arrived.
constexpr std::chrono::milliseconds kUnfinishedLineLimit{200};
// Boxes that lines caused are in a row when one comes so soon after the one before was closed.
constexpr std::chrono::seconds kBetweenBoxesOfARow{5};
// So many of a row have only OK.
constexpr int kBoxesWithoutWayOut = 3;

}  // namespace

Client::Client(Edge& atEdge, const Ports& usedPorts, std::span<const InboundRow> inbound,
               const MainWindowSlot& mainWindow)
    : edge(atEdge),
      ports(usedPorts),
      mainWindow_(mainWindow),
      sckClient_(usedPorts.sockets.makeSocket()),
      arrivals_(*this, inbound) {
  sckClient_->HoldBackUnfinishedLine(kUnfinishedLineLimit);
  sckClient_->onConnect = [this] { edge.runUnasked([this] { sckClient_Connect(*this); }); };
  sckClient_->onDataArrival = [this] { edge.runUnasked([this] { arrivals_.arrived(); }); };
  sckClient_->onClose = [this] { edge.runUnasked([this] { arrivals_.closed(); }); };
  sckClient_->onError = [this](int number, const std::string& description) {
    edge.runUnasked([&] { arrivals_.failed(number, description); });
  };
  ports.processes.onTrouble = [this](const std::string& text) {
    edge.runUnasked([&] { tellTrouble(text); });
  };
  ports.player.onTrouble = [this](const std::string& text) {
    edge.runUnasked([&] {
      if (MainWindow* window = mainWindow_.loaded(*this)) window->radioFailed();
      MsgBox(text, box_style::kExclamation);
    });
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
  show({.text = text, .style = style, .title = boxTitle.empty() ? title : boxTitle});
}

bool Client::confirm(const std::string& text) {
  return show({.text = text, .style = box_style::kExclamation, .title = title, .question = true}) ==
         BoxAnswer::yes;
}

bool Client::offer(const std::string& text) {
  return show({.text = text,
               .style = box_style::kInformation,
               .title = title,
               .question = true,
               .yesIsDefault = true}) == BoxAnswer::yes;
}

BoxAnswer Client::show(BoxRequest box) {
  const bool byLine = arrivals_.handling();
  if (byLine) {
    if (now() - boxClosed_ > kBetweenBoxesOfARow) boxesInARow_ = 0;
    box.offersDisconnect = ++boxesInARow_ > kBoxesWithoutWayOut;
  }
  box.unasked = !edge.userActs();
  const BoxAnswer answer = ports.dialogs.show(box);
  if (byLine) boxClosed_ = now();
  if (answer == BoxAnswer::disconnect) {
    boxesInARow_ = 0;
    disconnect(*this);
  }
  return answer;
}

void Client::tellTrouble(const std::string& text) {
  if (troubleOpen_) {
    ++furtherTroubles_;
    return;
  }
  troubleOpen_ = true;
  const ScopeExit done([this] { troubleOpen_ = false; });
  MsgBox(text, box_style::kCritical);
  while (const int further = std::exchange(furtherTroubles_, 0)) {
    MsgBox(further == 1
               ? std::string("Meanwhile another program could not be started.")
               : "Meanwhile " + std::to_string(further) + " more programs could not be started.",
           box_style::kCritical);
  }
}

void Client::connect(const std::string& host) {
  leaveConnection();
  sckClient_->Connect(host, kChatPort);
}

void Client::leaveConnection() {
  arrivals_.drop();
  sckClient_->Close();
  tellConnected(false);
}

void Client::closeConnection() {
  if (arrivals_.dropped()) return;
  sckClient_->Close();
  tellConnected(false);
  arrivals_.connectionClosed();
}

void Client::tellConnected(bool connected) {
  if (MainWindow* window = mainWindow_.loaded(*this)) window->showConnected(connected);
}

void start(Client& client) {
  client.edge.run([&] { client.form<frmLogin>().Show(); });
}

}  // namespace kelvaron
