#include "session/inbound_lines.h"

#include "build_settings.h"
#include "session/client.h"
#include "session/login_window.h"
#include "session/main_window.h"
#include "session/message_of_the_day.h"
#include "session/outbound.h"

namespace kelvaron::inbound {
namespace {

std::string field(const InboundContext& context, std::size_t index) {
  return std::string(context.line.field(index));
}

}  // namespace

void onBanUser(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.MsgBox("You have been banned from Kelvaron by " + field(context, 1) +
                      "!\r\n\r\nReason: " + field(context, 2),
                  box_style::kExclamation, "Banned from Kelvaron!");
  });
  client.closeConnection();
}

void onBad(InboundContext& context) {
  context.client.MsgBox(
      "To avoid confusion you are unable to login as QZN or Sorrel. Please relogin, using a "
      "different nickname.",
      box_style::kPlain, "Sorry!");
  context.client.closeConnection();
}

void onBanned(InboundContext& context) {
  context.client.MsgBox("You have been banned from Kelvaron! If this is a mistake contact QZN at " +
                            std::string(build::kContactAddress) + " or Sorrel to dispute it.",
                        box_style::kInformation, "You have been banned!");
  context.client.closeConnection();
}

void onMsgBox(InboundContext& context) {
  context.rule.step([&] { context.client.MsgBox(field(context, 1)); });
}

void onKicked(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] {
    client.MsgBox("You have been kicked off the server by " + field(context, 1) +
                      "\r\n\r\nReason: " + field(context, 2),
                  box_style::kExclamation, "Kicked!");
  });
  client.form<frmLogin>().Show();
  client.slots.unload(client.mainWindow());
}

void onDouble(InboundContext& context) {
  Client& client = context.client;
  client.MsgBox("Another users has chosen that name. Please use a different name");
  client.closeConnection();
  if (auto* login = client.loadedForm<frmLogin>()) client.slots.unload(*login);
  client.form<frmLogin>().Show();
}

void onMotd(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] { client.form<Form5>().Text1.Text = field(context, 1); });
  // Also after a login: who types to the room at once must not press its button.
  client.form<Form5>().ShowQuietly();
}

void onGetIp(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] { client.send(outbound::ip(client.sckClient().LocalIP())); });
}

void onBanIp(InboundContext& context) {
  Client& client = context.client;
  context.rule.step([&] { client.send(outbound::ipBan(client.sckClient().LocalIP())); });
}

}  // namespace kelvaron::inbound
