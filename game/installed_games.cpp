#include "game/installed_games.h"

#include <algorithm>
#include <array>

namespace kelvaron {
namespace {

struct Engine {
  std::string_view program;
  std::string_view name;
};
constexpr auto kEngines = std::to_array<Engine>({{"chocolate-doom", "Chocolate Doom"},
                                                 {"crispy-doom", "Crispy Doom"},
                                                 {"doomsday", "Doomsday"}});
constexpr std::string_view kServer = "doomsday-server";

struct DataFile {
  std::string GameConfig::*record;
  std::string_view file;
  std::string_view name;
};
// Of a record the first that is there counts.
constexpr auto kData = std::to_array<DataFile>({
    {&GameConfig::doomWad, "doom.wad", "Doom"},
    {&GameConfig::doomWad, "doomu.wad", "Doom"},
    {&GameConfig::doomWad, "doom1.wad", "Doom"},
    {&GameConfig::doomWad, "freedoom1.wad", "Freedoom"},
    {&GameConfig::doom2Wad, "doom2.wad", "Doom II"},
    {&GameConfig::doom2Wad, "freedoom2.wad", "Freedoom"},
    {&GameConfig::finalDoomWad, "doom2f.wad", "Final Doom"},
    {&GameConfig::plutoniaWad, "plutonia.wad", "Plutonia"},
    {&GameConfig::evilutionWad, "tnt.wad", "Evilution"},
});

std::string sentencePart(const std::vector<std::string_view>& names) {
  std::string all;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) all += i + 1 == names.size() ? " and " : ", ";
    all += names[i];
  }
  return all;
}

}  // namespace

std::optional<InstalledGames> findInstalled(const GamePlaces& places,
                                            const std::function<bool(const std::string&)>& exists) {
  const auto find = [&](const std::vector<std::string>& folders, std::string_view file) {
    for (const std::string& folder : folders) {
      if (std::string path = folder + '/' + std::string(file); exists(path)) return path;
    }
    return std::string();
  };
  const auto adapter = [&](std::string_view file) { return find({places.engines}, file); };
  if (places.engines.empty()) return std::nullopt;

  InstalledGames found;
  std::vector<std::string_view> names;
  for (const Engine& engine : kEngines) {
    if (!find(places.programs, engine.program).empty()) names.push_back(engine.name);
  }
  found.config.zdoomPath = adapter("zdoom.exe");
  if (names.empty() || found.config.zdoomPath.empty()) return std::nullopt;
  found.config.glZdoomCommand = adapter("zdoomgl.exe");
  if (names.back() == kEngines.back().name && !find(places.programs, kServer).empty()) {
    found.config.csServerPath = adapter("doomsv.exe");
    found.config.csClientPath = adapter("doomcl.exe");
  }

  const std::size_t engines = names.size();
  for (const DataFile& data : kData) {
    std::string& record = found.config.*data.record;
    if (!record.empty()) continue;
    record = find(places.gameData, data.file);
    if (!record.empty() && std::ranges::find(names, data.name) == names.end()) {
      names.push_back(data.name);
    }
  }
  if (names.size() == engines) return std::nullopt;
  found.names = sentencePart(names);
  return found;
}

}  // namespace kelvaron
