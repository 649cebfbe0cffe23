#include "game/launch_command.h"

namespace kelvaron {
namespace {

constexpr std::size_t kWarpDigits = 2;

struct Switch {
  bool GameOptions::*ticked;
  std::string_view text;
};

// In the order of the command.
constexpr std::array<Switch, 8> kSwitches = {{
    {&GameOptions::noMonsters, " -nomonsters"},
    {&GameOptions::noMusic, " -nomusic"},
    {&GameOptions::noSfx, " -nosfx"},
    {&GameOptions::respawn, " -respawn"},
    {&GameOptions::altDeath, " -altdeath"},
    {&GameOptions::deathmatch, " -deathmatch"},
    {&GameOptions::coop, " -coop"},
    {&GameOptions::fast, " -fast"},
}};

struct Value {
  std::string GameOptions::*value;
  std::string_view text;
};

constexpr std::array<Value, 4> kValues = {{
    {&GameOptions::timer, " -timer "},
    {&GameOptions::dup, " -dup "},
    {&GameOptions::turbo, " -turbo "},
    {&GameOptions::skill, " -skill "},
}};

// What host and guests have alike, behind " -extratic".
std::string sharedOptions(const GameOptions& options) {
  std::string text;
  for (const Switch& each : kSwitches) {
    if (options.*each.ticked) text += each.text;
  }
  for (const Value& each : kValues) {
    if (!(options.*each.value).empty()) text.append(each.text).append(options.*each.value);
  }
  if (const std::string& warp = options.warp; !warp.empty()) {
    text += " -warp ";
    text += warp.substr(warp.size() - std::min(warp.size(), kWarpDigits));
  }
  return text;
}

std::string externalWad(std::string_view wad, const GameConfig& config) {
  return "-file " + externalWadPath(wad, config);
}

}  // namespace

std::string externalWadPath(std::string_view wad, const GameConfig& config) {
  return config.externalWadFolder + "\\" + std::string(wad);
}

std::string hostOptions(const GameOptions& options, std::string_view programFolder) {
  std::string text = options.extratic ? " -extratic" : "";
  text += sharedOptions(options);
  if (options.record) text.append(" -record ").append(programFolder).append("\\kvdemo");
  return text;
}

std::string guestOptions(const GameOptions& options) {
  return (options.extratic ? " -extratic " : "") + sharedOptions(options);
}

std::string hostBase(const Game& game, const GameConfig& config) {
  return config.*game.engine + " -IWAD " + config.*game.wad;
}

std::string hostCommand(std::string_view begun, int players, std::string_view wad,
                        const GameConfig& config) {
  std::string command = std::string(begun) + " -host " + std::to_string(players);
  if (wad != kNone) command += " " + externalWad(wad, config);
  return command;
}

std::string soloCommand(std::string_view begun, std::string_view wad, const GameConfig& config) {
  return std::string(begun) + " " + (wad == kNone ? "" : externalWad(wad, config));
}

std::string guestCommand(const GameOffer& offer, const GameConfig& config) {
  std::string base;
  if (const Game* game = findGame(offer.gameKey)) {
    base = config.*game->engine + " -iwad " + config.*game->wad;
  }
  std::string wadClause;
  if (offer.wad != kNone) wadClause = externalWad(offer.wad, config);
  if (offer.skin != kNone) wadClause = "-file " + config.externalWadFolder2 + "\\" + offer.skin;
  return base + " -join " + offer.hostAddress + " " + wadClause + " " + offer.guestOptions + "\r\n";
}

}  // namespace kelvaron
