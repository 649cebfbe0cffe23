#include "game/offer_check.h"

#include <algorithm>
#include <vector>

#include "base/code_page.h"

namespace kelvaron {
namespace {

constexpr std::string_view kDigits = "0123456789";

std::vector<std::string_view> wordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    if (!word.empty()) words.push_back(word);
    text.remove_prefix(std::min(word.size() + 1, text.size()));
  }
  return words;
}

bool holdsControl(std::string_view text) { return std::ranges::any_of(text, isControl); }

// A word that an engine takes for more than a plain value.
bool isSwitchLike(std::string_view word) {
  return word.starts_with('-') || word.starts_with('+') || word.starts_with('@');
}

bool isPlainValue(std::string_view word) {
  return std::ranges::all_of(word, [](char character) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '.';
  });
}

// Words of the options that no Kelvaron sends, in their order, parted by blanks.
std::string unusualWords(std::string_view options) {
  std::string unusual;
  const std::vector<std::string_view> words = wordsOf(options);
  for (std::size_t i = 0; i < words.size(); ++i) {
    const EngineSwitch* known = findSwitch(words[i]);
    if (known == nullptr || known->origin != SwitchOrigin::offer) {
      unusual.append(unusual.empty() ? "" : " ").append(words[i]);
    } else if (known->value != nullptr && i + 1 < words.size() && isPlainValue(words[i + 1])) {
      ++i;
    }
  }
  return unusual;
}

bool isBareFileName(std::string_view name) {
  if (name.empty() || name == "." || name == ".." || holdsControl(name)) return false;
  if (name.find_first_of("/\\:\"") != std::string_view::npos) return false;
  return true;
}

// What speaks against a wad; empty for one that can be played.
std::string objectionToWad(const std::string& name, const GameConfig& config,
                           const std::function<bool(const std::string&)>& isOnDisk) {
  if (!isBareFileName(name) || isSwitchLike(name)) return " is not a plain file name";
  // Where there is no such file, its words could be taken for switches.
  return isOnDisk(externalWadPath(name, config)) ? "" : " is not in your folder of external wads";
}

bool isDottedDecimal(std::string_view text) {
  constexpr int kParts = 4;
  constexpr std::size_t kLongestPart = 3;
  constexpr int kLargestPart = 255;
  for (int part = 1; part <= kParts; ++part) {
    const std::string_view digits = text.substr(0, text.find('.'));
    if (digits.empty() || digits.size() > kLongestPart ||
        digits.find_first_not_of(kDigits) != std::string_view::npos ||
        std::stoi(std::string(digits)) > kLargestPart) {
      return false;
    }
    text.remove_prefix(digits.size());
    if (part == kParts) break;
    if (!text.starts_with('.')) return false;
    text.remove_prefix(1);
  }
  return text.empty();
}

}  // namespace

bool isAddress(std::string_view text) {
  if (isDottedDecimal(text)) return true;
  // The system tells the last of it when it connects; here it matters that it is nothing else.
  return std::ranges::count(text, ':') >= 2 &&
         text.find_first_not_of("0123456789abcdefABCDEF:.") == std::string_view::npos;
}

std::string unusualAbout(const GameOffer& offer, const GameConfig& config,
                         const std::function<bool(const std::string&)>& isOnDisk) {
  std::string remarks;
  const auto remark = [&](std::string_view text) { remarks.append(text).append(".\r\n"); };
  const auto quoted = [](std::string_view text) { return "\"" + std::string(text) + "\""; };

  if (const Game* game = findGame(offer.gameKey); game == nullptr) {
    remark("The game " + quoted(offer.gameKey) + " is not one that Kelvaron knows");
  } else {
    if ((config.*game->engine).empty()) {
      remark("You have not told Kelvaron where the engine of this game is");
    }
    if ((config.*game->wad).empty()) {
      remark("You have not told Kelvaron where the wad of this game is");
    }
  }
  if (const std::string words = unusualWords(offer.guestOptions); !words.empty()) {
    remark("The command line holds what Kelvaron never sends: " + words);
  } else if (holdsControl(offer.guestOptions)) {
    remark("The command line holds control characters");
  }
  if (offer.wad != kNone) {
    const std::string objection = objectionToWad(offer.wad, config, isOnDisk);
    if (!objection.empty()) remark("The wad " + quoted(offer.wad) + objection);
  }
  if (offer.skin != kNone) {
    remark("It names a skin, which Kelvaron never does: " + quoted(offer.skin));
  }
  if (!isAddress(offer.hostAddress)) {
    remark("The host's address " + quoted(offer.hostAddress) + " is not an address");
  }
  return remarks;
}

}  // namespace kelvaron
