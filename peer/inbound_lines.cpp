#include "peer/inbound_lines.h"

#include <algorithm>

#include "chat/main_window.h"
#include "peer/file_receiver.h"
#include "peer/file_sender.h"
#include "peer/ping.h"
#include "peer/profile.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/outbound.h"

namespace kelvaron {
namespace {

std::string shownName(Client& client) { return client.mainWindow().shownName().Caption; }

using ProfileLine = std::string (*)(std::string_view, std::string_view, std::string_view,
                                    const outbound::ProfileTexts&);

void answerProfile(InboundContext& context, ProfileLine line) {
  Client& client = context.client;
  // One step: without the file there is nothing to answer with.
  context.rule.step([&] {
    UserProfile own = readProfile(client);
    const auto records = own.records();
    outbound::ProfileTexts texts;
    // The name and the version in front are the room's, not the file's.
    for (std::size_t index = 0; index < texts.size(); ++index) {
      texts[index] = *records[index + records.size() - texts.size()];
      std::ranges::replace(texts[index], '\t', ' ');
    }
    client.send(
        line(context.line.field(1), shownName(client), client.form<frmMain>().version, texts));
  });
}

}  // namespace

namespace inbound {

void onGetProfile(InboundContext& context) { answerProfile(context, outbound::profile); }
void onGetProfile2(InboundContext& context) { answerProfile(context, outbound::profile2); }
void onProfile(InboundContext& context) { showProfile(context); }

void onPing(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.send(outbound::returnPing(client.sckClient().LocalIP(), shownName(client),
                                     context.line.field(1)));
  });
}

void onThePing(InboundContext& context) {
  Client& client = context.client;
  const auto field = [&](std::size_t index) { return std::string(context.line.field(index)); };
  context.rule.step([&] {
    const std::string name = field(2);
    client.form<Pingme>().Label2.Caption = name;
  });
  context.rule.step([&] { client.form<Pingme>().Label3.Caption = field(1); });
  showAnswer(client, client.form<Pingme>(), &AskedFor::ping);
  context.rule.step([&] { client.form<Pingme>().Caption = field(2) + "'s Ping"; });
}

void onGetIpForFile(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.send(outbound::okUserForFile(context.line.field(1), client.sckClient().LocalIP()));
  });
}

void onReturnIpForFile(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    const std::string address(context.line.field(1));
    client.form<Frm_Server>().Txt_RemoteIP.Text = address;
  });
  showAnswer(client, client.form<Frm_Server>(), &AskedFor::file);
}

void onIpFile(InboundContext&) {}

}  // namespace inbound
}  // namespace kelvaron
