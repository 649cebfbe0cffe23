// What a host ticks and chooses for a game, and the engines' switches that stand for it.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace kelvaron {

/// What the host ticked and chose. Empty texts are options that are off.
struct GameOptions {
  bool extratic = false;
  bool noMonsters = false;
  bool noMusic = false;
  bool noSfx = false;
  bool respawn = false;
  bool altDeath = false;
  bool deathmatch = false;
  bool coop = false;
  bool fast = false;
  std::string timer = {};
  std::string dup = {};
  std::string turbo = {};
  std::string skill = {};
  /// Its last two characters go into the command.
  std::string warp = {};
  bool record = false;
};

/// Who puts a switch into a guest's command.
enum class SwitchOrigin {
  /// The host, by the options of the offer.
  offer,
  /// The guest's own client.
  guest,
  /// Nobody: it stands in the host's own command alone.
  hostOnly
};

struct EngineSwitch {
  std::string_view word;
  SwitchOrigin origin;
  /// The option that the switch stands for, if it is one: a tick, or a value that goes behind it.
  bool GameOptions::*ticked = nullptr;
  std::string GameOptions::*value = nullptr;
};

/// All switches that Kelvaron puts into commands, the options in the order of the command.
inline constexpr auto kEngineSwitches = std::to_array<EngineSwitch>({
    {.word = "-extratic", .origin = SwitchOrigin::offer, .ticked = &GameOptions::extratic},
    {.word = "-nomonsters", .origin = SwitchOrigin::offer, .ticked = &GameOptions::noMonsters},
    {.word = "-nomusic", .origin = SwitchOrigin::offer, .ticked = &GameOptions::noMusic},
    {.word = "-nosfx", .origin = SwitchOrigin::offer, .ticked = &GameOptions::noSfx},
    {.word = "-respawn", .origin = SwitchOrigin::offer, .ticked = &GameOptions::respawn},
    {.word = "-altdeath", .origin = SwitchOrigin::offer, .ticked = &GameOptions::altDeath},
    {.word = "-deathmatch", .origin = SwitchOrigin::offer, .ticked = &GameOptions::deathmatch},
    {.word = "-coop", .origin = SwitchOrigin::offer, .ticked = &GameOptions::coop},
    {.word = "-fast", .origin = SwitchOrigin::offer, .ticked = &GameOptions::fast},
    {.word = "-timer", .origin = SwitchOrigin::offer, .value = &GameOptions::timer},
    {.word = "-dup", .origin = SwitchOrigin::offer, .value = &GameOptions::dup},
    {.word = "-turbo", .origin = SwitchOrigin::offer, .value = &GameOptions::turbo},
    {.word = "-skill", .origin = SwitchOrigin::offer, .value = &GameOptions::skill},
    {.word = "-warp", .origin = SwitchOrigin::offer, .value = &GameOptions::warp},
    {.word = "-iwad", .origin = SwitchOrigin::guest},
    {.word = "-join", .origin = SwitchOrigin::guest},
    {.word = "-file", .origin = SwitchOrigin::guest},
    {.word = "-host", .origin = SwitchOrigin::hostOnly},
    {.word = "-record", .origin = SwitchOrigin::hostOnly, .ticked = &GameOptions::record},
});

/// The switch of a word, letter for letter; null when there is none.
constexpr const EngineSwitch* findSwitch(std::string_view word) {
  const auto* const found = std::ranges::find(kEngineSwitches, word, &EngineSwitch::word);
  return found == kEngineSwitches.end() ? nullptr : found;
}

}  // namespace kelvaron
