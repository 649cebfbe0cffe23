#include "game/csdoom.h"

#include <chrono>
#include <string>

#include "chat/main_window.h"
#include "chat/user_list_entry.h"
#include "game/configuration.h"
#include "game/engine_start.h"
#include "game/in_game.h"
#include "game/offer_check.h"
#include "session/asked_for.h"
#include "session/client.h"
#include "session/outbound.h"
#include "session/sending.h"

namespace kelvaron {
namespace {

struct Hosting {
  // What the server was started by.
  std::string server;
};

// The address that the user has refused last.
struct Refused {
  std::string address;
  std::chrono::steady_clock::time_point when{};
};

// Whether the configuration names the client; if not, says so and shows where it is set.
bool clientIsSet(Client& client, const GameConfig& config) {
  if (!config.csClientPath.empty()) return true;
  client.MsgBox("First tell Kelvaron where the CSDoom client is.", box_style::kInformation);
  client.form<kelvaron::config>().Show();
  return false;
}

// A game that the user has not asked for. A No counts for a minute.
bool agreesToUnasked(Client& client, const std::string& address) {
  auto& refused = client.lasting<Refused>();
  if (refused.address == address && client.now() - refused.when < std::chrono::minutes(1)) {
    return false;
  }
  if (client.confirm("The server wants to start the CSDoom game at the address \"" + address +
                     "\", which you have not asked for.\r\nStart it all the same?")) {
    return true;
  }
  refused = {.address = address, .when = client.now()};
  return false;
}

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
  if (!clientIsSet(client, gameConfigAsItIs(client.ports.files))) return;
  const std::string entry = room.List1.Text();
  if (!sendOrTell(client, outbound::userIp(entry, client.UserName))) return;
  client.lasting<AskedFor>().ask(client, Asked::join, nicknameOf(entry));
}

void joinAt(Client& client, const std::string& address, const FaultRule& rule) {
  GameConfig config;
  switch (client.lasting<AskedFor>().takeAddress(client, Asked::join, address)) {
    case AskedFor::Address::passedOver:
      return;
    case AskedFor::Address::usable:
      config = gameConfigAsItIs(client.ports.files);
      if (!clientIsSet(client, config)) return;
      if (!isAddress(address) &&
          !client.confirm("The address of the CSDoom game is not an address: \"" + address +
                          "\".\r\nStart the game all the same?")) {
        return;
      }
      break;
    case AskedFor::Address::unasked:
      rule.step([&] { config = loadGameConfig(client.ports.files); });
      if (!agreesToUnasked(client, address)) return;
  }
  startOnce(client, [&] {
    client.form<Form4>().Show();
    startCsClient(client, config.csClientPath, address);
  });
}

void startCsClient(Client& client, std::string_view csClientPath, std::string_view address) {
  client.ports.processes.run(std::string(csClientPath) + " -connect " + std::string(address),
                             WindowStyle::maximizedFocus);
}

}  // namespace kelvaron
