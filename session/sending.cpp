#include "session/sending.h"

#include "session/client.h"

namespace kelvaron {

bool connectedOrTell(Client& client) {
  if (client.sckClient().State() == SocketState::connected) return true;
  client.MsgBox(kNothingSent, box_style::kExclamation);
  return false;
}

bool sendOrTell(Client& client, const std::string& line) {
  const auto fault = FaultRule::stop().handle([&] { client.send(line); });
  if (fault) client.MsgBox(kNothingSent, box_style::kExclamation);
  return !fault;
}

}  // namespace kelvaron
