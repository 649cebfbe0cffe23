// The list of muted users.
#pragma once

#include <string_view>

#include "platform/controls.h"
#include "platform/list_box.h"

namespace kelvaron {

class Client;

/// Its list box is the mute list itself: nicknames in upper case in the order of muting, in memory
/// only. The form hides and never unloads by its own button, so the list lasts.
class Muted : public Form {
 public:
  explicit Muted(Client& client);

  ListBox List1{*this, "List1", pixels(16, 16, 288, 220), false, ListBox::Selection::one};
  CommandButton Command1{*this, "Command1", pixels(192, 250, 112, 30), "Hide Me"};

 private:
  void Command1_Click();
};

/// Whether a room line is of a muted user. `sender` is a nickname with ": " behind it.
bool isMuted(const Client& client, std::string_view sender);

}  // namespace kelvaron
