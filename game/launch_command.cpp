#include "game/launch_command.h"

namespace kelvaron {
namespace {

constexpr std::size_t kWarpDigits = 2;

std::string valueOf(const EngineSwitch& option, const GameOptions& options) {
  const std::string& value = options.*option.value;
  if (option.value != &GameOptions::warp) return value;
  return value.substr(value.size() - std::min(value.size(), kWarpDigits));
}

// What host and guests have alike, but for what stands behind " -extratic".
std::string sharedOptions(const GameOptions& options, std::string_view behindExtratic) {
  std::string text;
  for (const EngineSwitch& each : kEngineSwitches) {
    if (each.origin != SwitchOrigin::offer) continue;
    if (each.ticked != nullptr && options.*each.ticked) {
      text.append(" ").append(each.word);
      if (each.ticked == &GameOptions::extratic) text += behindExtratic;
    }
    if (each.value != nullptr && !(options.*each.value).empty()) {
      text.append(" ").append(each.word).append(" ").append(valueOf(each, options));
    }
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
  std::string text = sharedOptions(options, "");
  if (options.record) text.append(" -record ").append(programFolder).append("\\kvdemo");
  return text;
}

std::string guestOptions(const GameOptions& options) { return sharedOptions(options, " "); }

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
