#include "game/inbound_lines.h"

#include "chat/colors.h"
#include "chat/main_window.h"
#include "game/awaiting_verification.h"
#include "game/csdoom.h"
#include "game/engine_start.h"
#include "game/final_chance.h"
#include "game/game_request.h"
#include "game/in_game.h"
#include "game/offer_check.h"
#include "session/client.h"
#include "session/outbound.h"

namespace kelvaron::inbound {
namespace {}  // namespace

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
  room.Text1.Text = guestCommand(offer, config);
  // Kept with the command: what the user is asked about before the start.
  room.Text1.Tag = unusualAbout(offer, config, [&client](const std::string& path) {
    return !FaultRule::stop().handle([&] { client.ports.streams.open(path); });
  });
  if (auto* lastLook = client.loadedForm<Form3>()) lastLook->commandChanged();
  room.txtOutput.setSelColor(colors::kBlack);

  request& form = client.form<request>();
  rule.step([&] { form.Text1.Text = std::string(line.field(6)); });
  const Game* game = findGame(offer.gameKey);
  form.Text2.Text = std::string(game == nullptr ? "" : game->displayName);
  form.Text3.Text = offer.wad;
  form.Text4.Text = offer.skin;
  form.Text5.Text = offer.guestOptions;
  form.Text6.Text = offer.hostAddress;
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

void onStart(InboundContext& context) { context.client.form<Form3>().ShowQuietly(); }

void onGetUserIp(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.send(outbound::okReturnIp(context.line.field(1), client.sckClient().LocalIP()));
  });
}

void onOkUserIp(InboundContext& context) {
  Client& client = context.client;
  GameConfig config;
  context.rule.step([&] { config = loadGameConfig(client.ports.files); });
  std::string address;
  context.rule.step([&] { address = context.line.field(1); });
  if (!mayJoin(client, address)) return;
  startOnce(client, [&] {
    client.form<Form4>().Show();
    startCsClient(client, config.csClientPath, address);
  });
}

}  // namespace kelvaron::inbound
