#include "peer/inbound_lines.h"

#include <algorithm>
#include <utility>

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
  std::string name;
  context.rule.step([&] { name = field(2); });
  const auto answer = client.lasting<AskedFor>().take(client, Asked::ping, name);
  // Who is measured stays until the user asks for somebody else.
  if (const auto* open = client.loadedForm<Pingme>(); open && open->Visible && !answer) return;
  auto& form = client.form<Pingme>();
  context.rule.step([&] { form.Label2.Caption = field(2); });
  context.rule.step([&] { form.Label3.Caption = field(1); });
  showAnswer(form, answer && !answer->typedSince);
  context.rule.step([&] { form.Caption = field(2) + "'s Ping"; });
}

void onGetIpForFile(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.send(outbound::okUserForFile(context.line.field(1), client.sckClient().LocalIP()));
  });
}

void onReturnIpForFile(InboundContext& context) {
  Client& client = context.client;
  std::string address;
  context.rule.step([&] { address = context.line.field(1); });
  auto& asked = client.lasting<AskedFor>();
  if (asked.takeAddress(client, Asked::file, address) != AskedFor::Address::usable) return;
  auto& form = client.form<Frm_Server>();
  form.Txt_RemoteIP.Text = address;
  const std::string dropped = std::exchange(client.lasting<DroppedFile>().path, {});
  if (!dropped.empty() && !form.transferring()) form.choose(dropped);
  showAnswer(form, !asked.typedSinceAddress(client));
}

void onIpFile(InboundContext&) {}

}  // namespace inbound
}  // namespace kelvaron
