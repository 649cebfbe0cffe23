// Sending of the lines that the dialogs and menus of moderation make.
#pragma once

#include <string>

namespace kelvaron {

class Client;

/// Sends the line, or says in a box that there is no connection. Whether it was sent.
bool sendOrTell(Client& client, const std::string& line);

}  // namespace kelvaron
