// A game offer, as a host sends it and as it reaches a guest.
#pragma once

#include <string>
#include <vector>

namespace kelvaron {

struct GameOffer {
  /// Up to six whole entries of the user list. Not told to guests.
  std::vector<std::string> invited = {};
  std::string gameKey = {};
  /// File name without folder, or "NONE".
  std::string wad = {};
  std::string skin = {};
  /// Options with a blank in front of each; may be empty.
  std::string guestOptions = {};
  std::string hostAddress = {};
  /// With a moderator's mark, if the host has one.
  std::string hostNick = {};
};

}  // namespace kelvaron
