// Sending of the lines that a user's own commands make.
#pragma once

#include <string>

namespace kelvaron {

class Client;

/// What a command says when there is no connection, whichever it is.
inline constexpr const char* kNothingSent =
    "Nothing was sent, as there is no connection to the server.";

/// Whether there is a connection to the chat server; if not, a box says so. For commands that do
/// something before they send.
bool connectedOrTell(Client& client);

/// Sends the line, or says in a box that there is no connection. Whether it was sent.
bool sendOrTell(Client& client, const std::string& line);

}  // namespace kelvaron
