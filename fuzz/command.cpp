// Fuzz target: an offer from the network, up to the arguments that an engine would be given.
//
// The input is the offer's fields, parted by TABs; all of it is also taken for a command of its
// own. The disk that paths are tried against is a small folder of the target's.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "base/code_page.h"
#include "fuzz/require.h"
#include "game/offer_check.h"
#include "native/command_line.h"
#include "tests/support/temporary_folder.h"

namespace kelvaron {
namespace {

// A folder with an engine and wads, among them names that look like switches.
struct Disk {
  Disk() {
    for (const char* name : {"engine", "doom.wad", "a - b.wad", "c +d.wad", "x -file y"}) {
      std::ofstream(folder.path() / name) << "PWAD";
    }
    std::filesystem::permissions(folder.path() / "engine", std::filesystem::perms::owner_all);
    std::filesystem::create_directory(folder.path() / "sub - folder");
    std::filesystem::current_path(folder.path());
  }

  testing::TemporaryFolder folder;
};

// Letter for letter, but for what the disk may spell otherwise and for what parts words.
std::string bare(std::string_view text) {
  std::string result = withFolderMarks(upper(text));
  std::erase_if(
      result, [](char each) { return each == ' ' || each == '/' || each == '\r' || each == '\n'; });
  return result;
}

void checkTokens(std::string_view command) {
  const CommandLine tokens = tokenize(command);
  std::string all = bare(tokens.location);
  for (const std::string& argument : tokens.arguments) all += bare(fromUtf8(argument));
  require(all == bare(command));
  if (tokens.program) require(!tokens.location.empty());
}

// An offer of which nothing is remarked starts no engine with a switch that Kelvaron never sends.
void checkOffer(std::string_view input, const std::string& folder) {
  std::vector<std::string_view> fields = pieces(input, '\t');
  fields.resize(4);
  const GameConfig config{
      .zdoomPath = folder + "/engine", .doomWad = "doom.wad", .externalWadFolder = folder};
  const GameOffer offer{.gameKey = "zdoom",
                        .wad = std::string(fields[0]),
                        .skin = std::string(kNone),
                        .guestOptions = std::string(fields[1]),
                        .hostAddress = std::string(fields[2]),
                        .hostNick = std::string(fields[3])};
  const auto isOnDisk = [](const std::string& path) {
    const auto found = findOnDisk(path);
    return found && (found->kind == DiskName::Kind::file || found->kind == DiskName::Kind::program);
  };
  if (!unusualAbout(offer, config, isOnDisk).empty()) return;
  for (const std::string& argument : tokenize(guestCommand(offer, config)).arguments) {
    const bool isSwitch = argument.starts_with('-') || argument.starts_with('+');
    if (!isSwitch) continue;
    const EngineSwitch* known = findSwitch(argument);
    require(known != nullptr && known->origin != SwitchOrigin::hostOnly);
  }
}

}  // namespace
}  // namespace kelvaron

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  static const Disk disk;
  const std::string_view input = asText(data, size);
  checkTokens(input);
  checkOffer(input, disk.folder.path().string());
  return 0;
}
