#include "client/kelvaron_client.h"

#include <array>

#include "chat/inbound_lines.h"
#include "chat/main_window.h"
#include "game/awaiting_verification.h"
#include "game/inbound_lines.h"
#include "game/wiring.h"
#include "moderation/inbound_lines.h"
#include "moderation/wiring.h"
#include "peer/inbound_lines.h"
#include "peer/profile.h"
#include "peer/wiring.h"
#include "session/inbound_lines.h"
#include "session/login_window.h"
#include "session/message_of_the_day.h"

namespace kelvaron {
namespace {

constexpr std::array<InboundRow, 31> kInbound = {{
    {"BANUSER", inbound::onBanUser},
    {"STATUSTEXT", inbound::onStatusText},
    {"BAD", inbound::onBad},
    {"banned", inbound::onBanned},
    {"MSGBOX", inbound::onMsgBox},
    {"XCEPT", inbound::onAccept},
    {"Announce", inbound::onAnnounce},
    {"Message", inbound::onMessage},
    {"Kicked", inbound::onKicked},
    {"Kicker", inbound::onKicker},
    {"DOUBLE", inbound::onDouble},
    {"Users", inbound::onUsers},
    {"Userscl", inbound::onUsersClear},
    {"MOTD", inbound::onMotd},
    {"IPFILE", inbound::onIpFile},
    {"PM", inbound::onPrivateMessage},
    {"GAME", inbound::onGame},
    {"START", inbound::onStart},
    {"GETPROFILE", inbound::onGetProfile},
    {"GETPROFILE2", inbound::onGetProfile2},
    {"DECLINE", inbound::onDecline},
    {"PROFILE", inbound::onProfile},
    {"getip", inbound::onGetIp},
    {"BANIP", inbound::onBanIp},
    {"PING", inbound::onPing},
    {"THEPING", inbound::onThePing},
    {"GETUSERIP", inbound::onGetUserIp},
    {"OKUSERIP", inbound::onOkUserIp},
    {"GETIPFT", inbound::onGetIpForFile},
    {"RETURNFT", inbound::onReturnIpForFile},
    {"PLAYSOUND", inbound::onPlaySound},
}};

// What folders above a form's own have to do with it.
void wireForms(Client& client) {
  client.slots.onMade<frmMain>([&client](frmMain& room) {
    wirePeer(client, room);
    wireGame(client, room);
    wireModeration(client, room);
  });
  // The form that waits for guests stands ready from the start, unseen.
  client.slots.onMade<frmLogin>(
      [&client](frmLogin&) { client.form<Form1>().Caption = client.title; });
  // The message of the day has the profile ready, unseen.
  client.slots.onMade<Form5>([&client](Form5&) { client.form<Profile>(); });
}

}  // namespace

std::span<const InboundRow> inboundTable() { return kInbound; }

std::unique_ptr<Client> makeClient(Edge& edge, const Ports& ports) {
  auto made = std::make_unique<Client>(
      edge, ports, kInbound,
      MainWindowSlot{.touch = [](Client& client) -> MainWindow& { return client.form<frmMain>(); },
                     .loaded = [](const Client& client) -> const MainWindow* {
                       return client.loadedForm<frmMain>();
                     }});
  wireForms(*made);
  return made;
}

}  // namespace kelvaron
