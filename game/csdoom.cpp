#include "game/csdoom.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "chat/main_window.h"
#include "game/configuration.h"
#include "game/offer_check.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

struct Hosting {
  // What the server was started by.
  std::string server;
};

struct Join {
  // The connection on which the user asked for an address that hasn't come yet.
  std::optional<std::uint64_t> askedOn;
  // The arrival in which the user was asked about an address last.
  std::optional<std::uint64_t> questionDuring;
};

}  // namespace

void launchCsServer(Client& client, frmMain& room) {
  const GameConfig config = gameConfigAsItIs(client.ports.files);
  if (config.csServerPath.empty() || config.csClientPath.empty()) {
    client.MsgBox("First tell Kelvaron where the CSDoom server and the CSDoom client are.",
                  box_style::kInformation);
    client.form<kelvaron::config>().Show();
    return;
  }
  if (!connectedOrTell(client)) return;
  client.lasting<Hosting>().server = config.csServerPath;
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
  client.ports.processes.leave(client.lasting<Hosting>().server);
  room.Command2.Enabled = false;
}

void joinCsGame(Client& client, frmMain& room) {
  if (!sendOrTell(client, outbound::userIp(room.List1.Text(), client.UserName))) return;
  client.lasting<Join>().askedOn = client.connectionsMade;
}

bool mayJoin(Client& client, const std::string& address) {
  auto& join = client.lasting<Join>();
  if (std::exchange(join.askedOn, std::nullopt) == client.connectionsMade) {
    return isAddress(address) ||
           client.confirm("The address of the CSDoom game is not an address: \"" + address +
                          "\".\r\nStart the game all the same?");
  }
  if (std::exchange(join.questionDuring, client.arrivals().handled()) ==
      client.arrivals().handled()) {
    return false;
  }
  return client.confirm("The server wants to start the CSDoom game at the address \"" + address +
                        "\", which you have not asked for.\r\nStart it all the same?");
}

void startCsClient(Client& client, std::string_view csClientPath, std::string_view address) {
  client.ports.processes.run(std::string(csClientPath) + " -connect " + std::string(address),
                             WindowStyle::maximizedFocus);
}

}  // namespace kelvaron
