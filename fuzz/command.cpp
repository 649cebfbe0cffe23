// Fuzz target: an offer from the network, up to the arguments that an engine would be given.
//
// The input is the offer's fields, parted by TABs; all of it is also taken for a command of its
// own. The disk that paths are tried against is a small folder of the target's.
#include <stdlib.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "fuzz/require.h"
#include "game/offer_check.h"
#include "native/command_line.h"
#include "platform/text.h"

namespace kelvaron {
namespace {

// A folder with an engine and wads, among them names that look like switches; gone with the
// program.
class Disk {
 public:
  Disk();
  ~Disk() {
    std::error_code ignored;  // nothing depends on it
    std::filesystem::remove_all(folder, ignored);
  }
  Disk(const Disk&) = delete;
  Disk& operator=(const Disk&) = delete;

  std::string folder = "/tmp/kelvaron-fuzz-XXXXXX";
};

Disk::Disk() {
  require(::mkdtemp(folder.data()) != nullptr);
  for (const char* name : {"engine", "doom.wad", "a - b.wad", "c +d.wad", "x -file y"}) {
    std::ofstream(folder + "/" + name) << "PWAD";
  }
  std::filesystem::permissions(folder + "/engine", std::filesystem::perms::owner_all);
  std::filesystem::create_directory(folder + "/sub - folder");
  std::filesystem::current_path(folder);
}

// Letter for letter, but for what the disk may spell otherwise and for what parts words.
std::string bare(std::string_view text) {
  std::string result = withSlashes(upper(text));
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
  std::array<std::string, 4> fields;
  for (std::string& field : fields) {
    const std::size_t tab = std::min(input.find('\t'), input.size());
    field = input.substr(0, tab);
    input.remove_prefix(std::min(tab + 1, input.size()));
  }
  const GameConfig config{
      .zdoomPath = folder + "/engine", .doomWad = "doom.wad", .externalWadFolder = folder};
  const GameOffer offer{.gameKey = "zdoom",
                        .wad = fields[0],
                        .skin = std::string(kNone),
                        .guestOptions = fields[1],
                        .hostAddress = fields[2],
                        .hostNick = fields[3]};
  const auto isOnDisk = [](const std::string& path) {
    const auto found = findOnDisk(path);
    return found && (found->kind == DiskName::Kind::file || found->kind == DiskName::Kind::program);
  };
  if (!unusualAbout(offer, config, isOnDisk).empty()) return;
  constexpr std::array<std::string_view, 17> kSent = {
      "-iwad",  "-join",    "-file",     "-extratic",   "-nomonsters", "-nomusic",
      "-nosfx", "-respawn", "-altdeath", "-deathmatch", "-coop",       "-fast",
      "-timer", "-dup",     "-turbo",    "-skill",      "-warp"};
  for (const std::string& argument : tokenize(guestCommand(offer, config)).arguments) {
    const bool isSwitch = argument.starts_with('-') || argument.starts_with('+');
    require(!isSwitch || std::ranges::find(kSent, argument) != kSent.end());
  }
}

}  // namespace
}  // namespace kelvaron

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kelvaron;
  static const Disk disk;
  const std::string_view input = asText(data, size);
  checkTokens(input);
  checkOffer(input, disk.folder);
  return 0;
}
