// Each connection to tests/lobby/windows/run.py is a server of this test's own, on the system that
// Wine runs on.
#include "tests/lobby/lobby_server.h"

#include <cstdlib>
#include <string>

#include "tests/support/raw_peer.h"

namespace kelvaron::testing {
namespace {

std::uint16_t starterPort() {
  const char* const told = std::getenv("KELVARON_LOBBY_STARTER");
  require(told != nullptr, "KELVARON_LOBBY_STARTER, which run.py sets");
  startSockets();
  return static_cast<std::uint16_t>(std::stoi(told));
}

}  // namespace

struct LobbyServer::Parts {
  RawPeer starter{starterPort()};
  std::uint16_t port = static_cast<std::uint16_t>(std::stoi(starter.receive()));
};

LobbyServer::LobbyServer() : parts_(std::make_unique<Parts>()) {}
LobbyServer::~LobbyServer() {
  parts_->starter.endSending();
  parts_->starter.receiveAll();
}

std::uint16_t LobbyServer::port() const { return parts_->port; }

}  // namespace kelvaron::testing
