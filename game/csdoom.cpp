#include "game/csdoom.h"

#include "chat/main_window.h"
#include "peer/configuration.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {

void launchCsServer(Client& client, frmMain& room) {
  const GameConfig config = gameConfigAsItIs(client.ports.files);
  if (config.csServerPath.empty() || config.csClientPath.empty()) {
    client.MsgBox("First tell Kelvaron where the CSDoom server and the CSDoom client are.",
                  box_style::kInformation);
    client.form<kelvaron::config>().Show();
    return;
  }
  if (!connectedOrTell(client)) return;
  client.ports.processes.run(config.csServerPath, WindowStyle::minimizedNoFocus);
  client.send(outbound::hostingCs(client.UserName));
  room.Command2.Enabled = true;
  startCsClient(client, config.csClientPath, client.sckClient().LocalIP());
  room.Label7.Caption = kHostingStatus;
}

void returnFromCs(Client& client, frmMain& room) {
  // Without a connection there is no mark to take off.
  const FaultRule rule = FaultRule::goOn();
  rule.step([&] { client.send(outbound::returnCs(client.UserName)); });
  room.Command2.Enabled = false;
}

void joinCsGame(Client& client, frmMain& room) {
  if (!connectedOrTell(client)) return;
  client.send(outbound::userIp(room.List1.Text(), client.UserName));
}

void startCsClient(Client& client, std::string_view csClientPath, std::string_view address) {
  client.ports.processes.run(std::string(csClientPath) + " -connect " + std::string(address),
                             WindowStyle::maximizedFocus);
}

}  // namespace kelvaron
