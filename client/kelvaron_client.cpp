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

constexpr auto kInbound = std::to_array<InboundRow>({
    {.keyword = "BANUSER", .handler = inbound::onBanUser},
    {.keyword = "STATUSTEXT", .handler = inbound::onStatusText},
    {.keyword = "BAD", .handler = inbound::onBad},
    {.keyword = "banned", .handler = inbound::onBanned},
    {.keyword = "MSGBOX", .handler = inbound::onMsgBox},
    {.keyword = "XCEPT", .handler = inbound::onAccept},
    {.keyword = "Announce", .handler = inbound::onAnnounce},
    {.keyword = "Message", .handler = inbound::onMessage},
    {.keyword = "Kicked", .handler = inbound::onKicked},
    {.keyword = "Kicker", .handler = inbound::onKicker},
    {.keyword = "DOUBLE", .handler = inbound::onDouble},
    {.keyword = "Users", .handler = inbound::onUsers},
    {.keyword = "Userscl", .handler = inbound::onUsersClear},
    {.keyword = "MOTD", .handler = inbound::onMotd},
    {.keyword = "IPFILE", .handler = inbound::onIpFile},
    {.keyword = "PM", .handler = inbound::onPrivateMessage},
    {.keyword = "GAME", .handler = inbound::onGame},
    {.keyword = "START", .handler = inbound::onStart},
    {.keyword = "GETPROFILE", .handler = inbound::onGetProfile},
    {.keyword = "GETPROFILE2", .handler = inbound::onGetProfile2},
    {.keyword = "DECLINE", .handler = inbound::onDecline},
    {.keyword = "PROFILE", .handler = inbound::onProfile},
    {.keyword = "getip", .handler = inbound::onGetIp},
    {.keyword = "BANIP", .handler = inbound::onBanIp},
    {.keyword = "PING", .handler = inbound::onPing},
    {.keyword = "THEPING", .handler = inbound::onThePing},
    {.keyword = "GETUSERIP", .handler = inbound::onGetUserIp},
    {.keyword = "OKUSERIP", .handler = inbound::onOkUserIp},
    {.keyword = "GETIPFT", .handler = inbound::onGetIpForFile},
    {.keyword = "RETURNFT", .handler = inbound::onReturnIpForFile},
    {.keyword = "PLAYSOUND", .handler = inbound::onPlaySound},
});

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
                     .loaded = [](const Client& client) -> MainWindow* {
                       return client.loadedForm<frmMain>();
                     }});
  wireForms(*made);
  return made;
}

}  // namespace kelvaron
