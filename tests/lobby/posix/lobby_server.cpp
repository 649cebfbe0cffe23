#include "tests/lobby/lobby_server.h"

#include "server/password.h"
#include "tests/server/peer.h"

namespace kelvaron::testing {

struct LobbyServer::Parts {
  Parts() {
    const server::Store store(folder.path());
    store.prepare();
    store.setModerator({"ann", "ann@example.org", server::hashPassword("secret")});
    running = std::make_unique<server::RunningServer>(folder.path());
  }

  TemporaryFolder folder;
  std::unique_ptr<server::RunningServer> running;
};

LobbyServer::LobbyServer() : parts_(std::make_unique<Parts>()) {}
LobbyServer::~LobbyServer() = default;

std::uint16_t LobbyServer::port() const { return parts_->running->port(); }

}  // namespace kelvaron::testing
