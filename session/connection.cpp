#include "session/connection.h"

#include "session/client.h"
#include "session/login_window.h"
#include "session/main_window.h"
#include "session/outbound.h"

namespace kelvaron {
namespace {

constexpr Color kLostColor{255, 0, 0};

}  // namespace

void sckClient_Connect(Client& client) {
  ++client.connectionsMade;
  client.send(outbound::name(client.UserName, client.sckClient().LocalIP()));
  client.mainWindow().Show();
  client.tellConnected(true);
  client.send(outbound::motd());
  if (auto* login = client.loadedForm<frmLogin>()) client.slots.unload(*login);
}

void sckClient_Close(Client& client) {
  client.tellConnected(false);
  RichTextBox& txtOutput = client.mainWindow().output();
  txtOutput.caretToEnd();
  txtOutput.setSelBold(true);
  txtOutput.setSelColor(kLostColor);
  txtOutput.insert("* Connection to the server has been lost!\r\n");
  txtOutput.setSelBold(false);
}

void sckClient_Error(Client& client, int number, const std::string& description) {
  client.MsgBox("Error: " + std::to_string(number) + " - " + description);
  client.form<frmLogin>().Show();
  client.slots.unload(client.mainWindow());
}

void disconnect(Client& client) {
  client.leaveConnection();
  client.mainWindow().output().Content.clear();
  client.mainWindow().users().Clear();
}

void reconnect(Client& client) { client.connect(client.serverAddress); }

void quit(Client& client) {
  disconnect(client);
  client.ports.application.DoEvents();
  client.ports.application.End();
}

void leaveWithFarewell(Client& client) {
  const FaultRule rule = FaultRule::goOn();
  rule.step([&] {
    client.send(
        outbound::action(client.UserName + " has become bored with life and left Kelvaron!"));
  });
  client.ports.application.End();
}

}  // namespace kelvaron
