// Where the game takes hold of the room below it.
#pragma once

namespace kelvaron {

class Client;
class frmMain;

/// Wires the game's handlers to the button and the menu entries of a room that was made just now.
void wireGame(Client& client, frmMain& room);

}  // namespace kelvaron
