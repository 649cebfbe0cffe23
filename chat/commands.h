// What the user types: slash commands and chat lines.
#pragma once

namespace kelvaron {

class Client;
class frmMain;

/// The Enter key in `txtinput`: runs the command that its text begins with, or says the text. A
/// fault ends the handler quietly and leaves the text in the box, so that it can be sent again.
void enterPressed(Client& client, frmMain& room);

}  // namespace kelvaron
