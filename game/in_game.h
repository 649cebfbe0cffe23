// The time in a game: from the start of an engine until the user comes back to the chat.
#pragma once

#include <string_view>

#include "platform/controls.h"

namespace kelvaron {

class Client;

/// The own status while in a game, and after it.
inline constexpr const char* kInGameStatus = "In a Game";
inline constexpr const char* kBackStatus = "Ready to Play";

/// Making it goes into the game: a sound, silence from the radio, "INGAME" and the status. The
/// client doesn't watch the engine; Resume, or a click on the form, comes back.
class Form4 : public Form {
 public:
  explicit Form4(Client& client);

  Label Label1{*this, "Label1", pixels(20, 24, 320, 40), "Chat Suspended"};
  CommandButton Command1{*this, "Command1", pixels(124, 82, 112, 30), "Resume"};

  void Form_Load() override;
  void Form_Click() override { comeBack(); }

 private:
  void comeBack();

  Client& client_;
};

}  // namespace kelvaron
