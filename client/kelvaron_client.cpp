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

using enum Subsystem;

constexpr std::array<InboundRow, 31> kInbound = {{
    {"BANUSER", session, inbound::onBanUser},
    {"STATUSTEXT", chat, inbound::onStatusText},
    {"BAD", session, inbound::onBad},
    {"banned", session, inbound::onBanned},
    {"MSGBOX", session, inbound::onMsgBox},
    {"XCEPT", game, inbound::onAccept},
    {"Announce", chat, inbound::onAnnounce},
    {"Message", chat, inbound::onMessage},
    {"Kicked", session, inbound::onKicked},
    {"Kicker", moderation, inbound::onKicker},
    {"DOUBLE", session, inbound::onDouble},
    {"Users", chat, inbound::onUsers},
    {"Userscl", chat, inbound::onUsersClear},
    {"MOTD", session, inbound::onMotd},
    {"IPFILE", peer, inbound::onIpFile},
    {"PM", chat, inbound::onPrivateMessage},
    {"GAME", game, inbound::onGame},
    {"START", game, inbound::onStart},
    {"GETPROFILE", peer, inbound::onGetProfile},
    {"GETPROFILE2", peer, inbound::onGetProfile2},
    {"DECLINE", game, inbound::onDecline},
    {"PROFILE", peer, inbound::onProfile},
    {"getip", session, inbound::onGetIp},
    {"BANIP", session, inbound::onBanIp},
    {"PING", peer, inbound::onPing},
    {"THEPING", peer, inbound::onThePing},
    {"GETUSERIP", game, inbound::onGetUserIp},
    {"OKUSERIP", game, inbound::onOkUserIp},
    {"GETIPFT", peer, inbound::onGetIpForFile},
    {"RETURNFT", peer, inbound::onReturnIpForFile},
    {"PLAYSOUND", chat, inbound::onPlaySound},
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
