// What games need of the chat connection before they send a line.
#pragma once

#include <string>

#include "session/client.h"

namespace kelvaron {

/// Whether there is a connection to the chat server; if not, a box says what was not done (the
/// beginning of a sentence) and why.
inline bool connectedOrTold(Client& client, const std::string& notDone) {
  if (client.sckClient().State() == SocketState::connected) return true;
  client.MsgBox(notDone + ", as there is no connection to the server.", box_style::kExclamation);
  return false;
}

}  // namespace kelvaron
