// The life of the connection to the chat server: made, lost, failed, left and taken up again.
#pragma once

#include <string>

namespace kelvaron {

class Client;

/// Greets the server with `Name` and `MOTD`, shows the room and drops the login window. The room
/// does not wait for an answer.
void sckClient_Connect(Client& client);
/// The server closed the connection: a red notice in the chat view; list and menus stay.
void sckClient_Close(Client& client);
/// The connection failed: a box, then the program ends.
void sckClient_Error(Client& client, int number, const std::string& description);

/// Closes the connection without a line and empties chat view and user list.
void disconnect(Client& client);
/// Connects again to the server of the last login.
void reconnect(Client& client);
/// Leaves without a farewell and ends the program.
void quit(Client& client);
/// Says farewell to the room, if it can be heard, and ends the program.
void leaveWithFarewell(Client& client);

}  // namespace kelvaron
