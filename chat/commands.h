// What the user types: slash commands and chat lines.
#pragma once

#include <string_view>
#include <vector>

namespace kelvaron {

class Client;
class frmMain;

/// The Enter key in `txtinput`: runs the command that its text begins with, or says the text. A
/// fault ends the handler quietly and leaves the text in the box, so that it can be sent again.
void enterPressed(Client& client, frmMain& room);

/// The words of the commands, in capitals with their "/".
std::vector<std::string_view> commandWords();
/// Whether a text begins with a command that is about a whole entry of the user list, with its tag.
bool isAboutEntry(std::string_view text);
/// Whether Enter says a text to everybody that begins like a command.
bool saysCommandAloud(std::string_view text, const frmMain& room);

}  // namespace kelvaron
