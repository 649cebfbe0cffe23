#include "game/inbound_lines.h"

#include "chat/colors.h"
#include "chat/main_window.h"
#include "game/awaiting_verification.h"
#include "game/csdoom.h"
#include "game/final_chance.h"
#include "game/game_request.h"
#include "game/offer_check.h"
#include "game/pending_offer.h"
#include "session/client.h"
#include "session/outbound.h"

namespace kelvaron::inbound {

void onGame(InboundContext& context) {
  const FaultRule& rule = context.rule;
  const ProtocolLine& line = context.line;
  Client& client = context.client;
  frmMain& room = client.form<frmMain>();

  GameConfig config;
  rule.step([&] { config = loadGameConfig(client.ports.files); });
  GameOffer offer;
  rule.step([&] { offer.gameKey = line.field(1); });
  rule.step([&] { offer.wad = line.field(2); });
  rule.step([&] { offer.skin = line.field(3); });
  rule.step([&] { offer.hostAddress = line.field(5); });
  rule.step([&] { offer.guestOptions = line.field(4); });
  rule.step([&] { offer.hostNick = line.field(6); });
  PendingOffer& pending = client.lasting<PendingOffers>().latest;
  pending = {.host = offer.hostNick,
             .address = offer.hostAddress,
             .command = guestCommand(offer, config),
             .unusual = unusualAbout(offer, config, [&client](const std::string& path) {
               return !FaultRule::stop().handle([&] { client.ports.streams.open(path); });
             })};
  room.Text1.Text = pending.command;
  room.txtOutput.setSelColor(colors::kBlack);
  if (auto* lastLook = client.loadedForm<Form3>()) lastLook->offerChanged();

  request& form = client.form<request>();
  form.show(offer, pending);
  form.ShowQuietly();
}

void onAccept(InboundContext& context) {
  context.rule.step([&] { context.client.form<Form1>().showAccepted(context.line.field(1)); });
}

void onDecline(InboundContext& context) {
  Form1& waiting = context.client.form<Form1>();
  context.rule.step([&] { waiting.showDeclined(context.line.field(1)); });
  waiting.ShowQuietly();
}

void onStart(InboundContext& context) {
  context.client.form<frmMain>().hints.passed();
  context.client.form<Form3>().ShowQuietly();
}

void onGetUserIp(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.send(outbound::okReturnIp(context.line.field(1), client.sckClient().LocalIP()));
  });
}

void onOkUserIp(InboundContext& context) {
  std::string address;
  context.rule.step([&] { address = context.line.field(1); });
  joinAt(context.client, address, context.rule);
}

}  // namespace kelvaron::inbound
