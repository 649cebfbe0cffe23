// Who hosts a game, and with what.
#pragma once

#include <optional>
#include <string>

namespace kelvaron::engines {

/// Where the hosts of the Chocolate family listen, UDP.
inline constexpr const char* kChocolatePort = "2342";

struct Host {
  /// What the host says of itself, as "Crispy Doom 5.12.0"; empty for Doomsday.
  std::string version;
  bool begun = false;
};

/// Who answers there. Takes up to a second where nobody does. Throws Refusal for an address that is
/// none.
std::optional<Host> hostAt(const std::string& address);

/// Likewise, of the Chocolate family alone. Takes half a second where nobody does.
std::optional<Host> chocolateAt(const std::string& address);

/// Whether somebody listens there for Doomsday's players.
bool doomsdayListens(const std::string& address);

/// Whether another program of this machine has the port.
bool portTaken(int type, const char* port);

}  // namespace kelvaron::engines
