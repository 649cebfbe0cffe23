#include "client/kelvaron_client.h"

#include <array>

#include "chat/inbound_lines.h"
#include "chat/main_window.h"
#include "moderation/inbound_lines.h"
#include "moderation/moderator_menu.h"
#include "session/inbound_lines.h"

namespace kelvaron {
namespace {

using enum Subsystem;

constexpr std::array<InboundRow, 31> kInbound = {{
    {"BANUSER", session, inbound::onBanUser},
    {"STATUSTEXT", chat, inbound::onStatusText},
    {"BAD", session, inbound::onBad},
    {"banned", session, inbound::onBanned},
    {"MSGBOX", session, inbound::onMsgBox},
    {"XCEPT", game, nullptr},
    {"Announce", chat, inbound::onAnnounce},
    {"Message", chat, inbound::onMessage},
    {"Kicked", session, inbound::onKicked},
    {"Kicker", moderation, inbound::onKicker},
    {"DOUBLE", session, inbound::onDouble},
    {"Users", chat, inbound::onUsers},
    {"Userscl", chat, inbound::onUsersClear},
    {"MOTD", session, inbound::onMotd},
    {"IPFILE", peer, nullptr},
    {"PM", chat, inbound::onPrivateMessage},
    {"GAME", game, nullptr},
    {"START", game, nullptr},
    {"GETPROFILE", peer, nullptr},
    {"GETPROFILE2", peer, nullptr},
    {"DECLINE", game, nullptr},
    {"PROFILE", peer, nullptr},
    {"getip", session, inbound::onGetIp},
    {"BANIP", session, inbound::onBanIp},
    {"PING", peer, nullptr},
    {"THEPING", peer, nullptr},
    {"GETUSERIP", game, nullptr},
    {"OKUSERIP", game, nullptr},
    {"GETIPFT", peer, nullptr},
    {"RETURNFT", peer, nullptr},
    {"PLAYSOUND", chat, inbound::onPlaySound},
}};

}  // namespace

std::span<const InboundRow> inboundTable() { return kInbound; }

std::unique_ptr<Client> makeClient(Edge& edge, const Ports& ports) {
  auto client = std::make_unique<Client>(
      edge, ports, kInbound, [](Client& owner) -> MainWindow& { return owner.form<frmMain>(); });
  client->slots.onMade = [owner = client.get()](Form& form) {
    if (auto* room = dynamic_cast<frmMain*>(&form)) wireModeration(*owner, *room);
  };
  return client;
}

}  // namespace kelvaron
