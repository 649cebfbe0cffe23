#include "game/game_config.h"

#include <algorithm>

#include "platform/delimited_fields.h"
#include "platform/text.h"
#include "session/client.h"

namespace kelvaron {
namespace {

constexpr const char* kWhereToMend =
    " You can set up your games under Tools, Config, Configure Games.";

}  // namespace

ParsedGameConfig parseGameConfig(std::string_view text) {
  std::vector<std::string> fields = readFields(text, kGameConfigRecords);
  ParsedGameConfig parsed{.config = {}, .records = fields.size()};
  for (std::size_t i = 0; i < fields.size(); ++i) {
    parsed.config.*kGameConfigOrder[i] = std::move(fields[i]);
  }
  return parsed;
}

std::string formatGameConfig(const GameConfig& config) {
  std::string text;
  for (const auto record : kGameConfigOrder) text.append(config.*record).append(kLineEnd);
  return text;
}

GameConfig loadGameConfig(FilePort& files) {
  ParsedGameConfig parsed = parseGameConfig(files.read(kGameConfigFile));
  if (parsed.records < kGameConfigRecords) {
    throw Fault(fault_number::kInputPastEnd,
                "The file " + std::string(kGameConfigFile) + " is not complete");
  }
  return std::move(parsed.config);
}

void saveGameConfig(FilePort& files, const GameConfig& config) {
  files.replace(kGameConfigFile, formatGameConfig(config));
}

GameConfig gameConfigAsItIs(FilePort& files) {
  GameConfig config;
  FaultRule::stop().handle([&] { config = parseGameConfig(files.read(kGameConfigFile)).config; });
  return config;
}

GameConfig gameConfigForUser(Client& client, std::size_t records) {
  ParsedGameConfig parsed;
  const auto unread = FaultRule::stop().handle(
      [&] { parsed = parseGameConfig(client.ports.files.read(kGameConfigFile)); });
  if (unread) {
    client.MsgBox(std::string(unread->what()) + "." + kWhereToMend, box_style::kInformation);
  } else if (parsed.records < records) {
    client.MsgBox("The file " + std::string(kGameConfigFile) + " holds only " +
                      std::to_string(parsed.records) +
                      " of its 11 lines; what is missing counts as not set." + kWhereToMend,
                  box_style::kInformation);
  }
  return std::move(parsed.config);
}

}  // namespace kelvaron
