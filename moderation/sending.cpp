#include "moderation/sending.h"

#include "session/client.h"

namespace kelvaron {

bool sendOrTell(Client& client, const std::string& line) {
  const auto fault = FaultRule::stop().handle([&] { client.send(line); });
  if (!fault) return true;
  client.MsgBox("Nothing was sent, as there is no connection to the server.",
                box_style::kExclamation);
  return false;
}

}  // namespace kelvaron
