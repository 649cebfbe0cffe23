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
    edge.run([&] { tellTrouble(text); });
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
  show({.text = text, .style = style, .title = boxTitle.empty() ? title : boxTitle});
}

bool Client::confirm(const std::string& text) {
  return show({.text = text, .style = box_style::kExclamation, .title = title, .question = true}) ==
         BoxAnswer::yes;
}

BoxAnswer Client::show(BoxRequest box) {
  const bool byLine = handlingArrival_;
  if (byLine) {
    if (now() - boxClosed_ > kBetweenBoxesOfARow) boxesInARow_ = 0;
    box.offersDisconnect = ++boxesInARow_ > kBoxesWithoutWayOut;
  }
  box.unasked = byLine || troubleOpen_;
  const BoxAnswer answer = ports.dialogs.show(box);
  if (byLine) boxClosed_ = now();
  if (answer == BoxAnswer::disconnect) {
    boxesInARow_ = 0;
    arrivalDropped_ = true;
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

/// Handles what was read, and puts back what takes too long. Whether all was handled.
bool Client::handled(const std::string& received) {
  // What was put back stands in front of what has come since, and is a read of its own still.
  const Left before = std::exchange(left_, {});
  const std::size_t old = before.connection == connectionsMade ? before.bytes : 0;
  const std::string_view all = received;
  std::size_t done = 0;
  const auto handle = [&](std::size_t end, const FaultRule& rule) {
    const ArrivalRest rest = handleArrival(*this, all.substr(done, end - done), inbound_, rule);
    done = end - rest.lines.size();
    if (rest.lines.empty()) return true;
    left_ = {rest.lines.size(), connectionsMade, rest.rule};
    sckClient_->PutBack(all.substr(done));
    return false;
  };
  if (old > 0 && !handle(old, before.rule)) return false;
  return arrivalDropped_ || handle(all.size(), FaultRule::stop());
}

void Client::arrival() {
  if (std::exchange(handlingArrival_, true)) {
    arrivalWaits_ = true;
    return;
  }
  const ScopeExit done([this] { handlingArrival_ = false; });
  arrivalDropped_ = false;

  do {
    arrivalWaits_ = false;
    if (!handled(sckClient_->GetData())) return;
  } while (arrivalWaits_ && !arrivalDropped_);
  ++arrivalsHandled_;
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
