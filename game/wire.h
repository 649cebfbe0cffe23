// Where the game takes hold of the windows below it.
#pragma once

namespace kelvaron {

class Client;
class Form;

/// Wires the game's handlers to a form that was made just now: the room's button and menu entries.
/// The login window names the waiting form by the application's title.
void wireGame(Client& client, Form& made);

}  // namespace kelvaron
