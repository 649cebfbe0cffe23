#include "engines/game_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace kelvaron::engines {
namespace {

// A file begins with "IWAD" or "PWAD", the number of entries and where the directory begins; an
// entry is a place, a size and a name, filled up with NULs. Numbers have four bytes, lowest first.
constexpr std::size_t kNumber = 4;
constexpr std::size_t kHeader = 12;
constexpr std::size_t kEntry = 16;
constexpr std::size_t kNameInEntry = 8;

std::uint32_t numberAt(const std::array<char, kHeader>& header, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = kNumber; i-- > 0;) {
    number = number << 8U | static_cast<unsigned char>(header.at(at + i));
  }
  return number;
}

}  // namespace

std::vector<std::string> namesIn(const std::string& gameFile) {
  errno = 0;
  std::ifstream file(gameFile, std::ios::binary);
  std::array<char, kHeader> header{};
  if (!file || (!file.read(header.data(), header.size()) && errno != 0)) {
    throw std::runtime_error(gameFile +
                             " can't be read: " + std::generic_category().message(errno));
  }
  const std::string kind(header.data(), kNumber);
  file.seekg(numberAt(header, 2 * kNumber));
  std::vector<std::string> names;
  std::array<char, kEntry> entry{};
  for (std::uint32_t left = numberAt(header, kNumber); left > 0 && file; --left) {
    if (!file.read(entry.data(), entry.size())) break;
    const std::string name(entry.data() + kNameInEntry, kEntry - kNameInEntry);
    names.push_back(name.substr(0, name.find('\0')));
  }
  if (!file || (kind != "IWAD" && kind != "PWAD")) {
    throw std::runtime_error(gameFile + " is no game file");
  }
  return names;
}

bool hasEpisodes(const std::vector<std::string>& names) {
  return std::ranges::find(names, "E1M1") != names.end();
}

Edition editionOf(const std::string& gameFile) {
  const std::vector<std::string> names = namesIn(gameFile);
  const auto holds = [&](const char* name) {
    return std::ranges::find(names, name) != names.end();
  };
  // Freedoom's files hold the marks of all other games.
  if (holds("FREEDOOM")) {
    return hasEpisodes(names) ? Edition{"doom1-freedoom", "freedoom1.wad"}
                              : Edition{"doom2-freedoom", "freedoom2.wad"};
  }
  if (holds("E4M1")) return {"doom1-ultimate", "doom.wad"};
  if (holds("E2M1")) return {"doom1", "doom.wad"};
  if (hasEpisodes(names)) return {"doom1-share", "doom1.wad"};
  if (holds("REDTNT2")) return {"doom2-tnt", "tnt.wad"};
  if (holds("CAMO1")) return {"doom2-plut", "plutonia.wad"};
  return {"doom2", "doom2.wad"};
}

}  // namespace kelvaron::engines
