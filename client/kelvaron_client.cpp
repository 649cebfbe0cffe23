#include "client/kelvaron_client.h"

#include <array>

#include "chat/inbound_lines.h"
#include "chat/main_window.h"
#include "game/awaiting_verification.h"
#include "game/inbound_lines.h"
#include "game/wire.h"
#include "moderation/inbound_lines.h"
#include "moderation/moderator_menu.h"
#include "peer/inbound_lines.h"
#include "peer/profile.h"
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
void wire(Client& client, Form& form) {
  if (auto* room = dynamic_cast<frmMain*>(&form)) {
    wirePeer(client, *room);
    wireGame(client, *room);
    wireModeration(client, *room);
  } else if (dynamic_cast<frmLogin*>(&form) != nullptr) {
    // The form that waits for guests stands ready from the start, unseen.
    client.form<Form1>().Caption = client.title;
  } else if (dynamic_cast<Form5*>(&form) != nullptr) {
    // The message of the day has the profile ready, unseen.
    client.form<Profile>();
  }
}

}  // namespace

std::span<const InboundRow> inboundTable() { return kInbound; }

std::unique_ptr<Client> makeClient(Edge& edge, const Ports& ports) {
  auto made = std::make_unique<Client>(
      edge, ports, kInbound, [](Client& client) -> MainWindow& { return client.form<frmMain>(); });
  made->slots.onMade = [&client = *made](Form& form) { wire(client, form); };
  return made;
}

}  // namespace kelvaron
