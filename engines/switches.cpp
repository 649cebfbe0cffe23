#include "engines/switches.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "engines/game_file.h"

namespace kelvaron::engines {
namespace {

enum class Kind { flag, number, file, files, newFile, level, host, join };

// Who takes a switch besides the games.
enum Takers : unsigned { games = 0, server = 1, client = 2, picture = 4, serverOnly = 8 };

struct Switch {
  std::string_view name;
  Kind kind;
  /// What Chocolate Doom calls it; empty for what it does anyway or can't do.
  std::string_view chocolateName;
  unsigned takers = games;
};

constexpr std::array kSwitches = {
    Switch{"-iwad", Kind::file, "-iwad", server | client},
    Switch{"-file", Kind::files, "-file", server | client},
    Switch{"-record", Kind::newFile, "-record"},
    Switch{"-warp", Kind::level, "-warp", server},
    Switch{"-host", Kind::host, ""},
    Switch{"-join", Kind::join, ""},
    Switch{"-connect", Kind::join, "", client},
    Switch{"-skill", Kind::number, "-skill", server},
    Switch{"-timer", Kind::number, "-timer", server},
    Switch{"-turbo", Kind::number, "-turbo"},
    Switch{"-dup", Kind::number, "-dup"},
    Switch{"-extratic", Kind::flag, "-extratics"},
    Switch{"-nomonsters", Kind::flag, "-nomonsters", server},
    Switch{"-nomusic", Kind::flag, "-nomusic", client},
    Switch{"-nosfx", Kind::flag, "-nosfx", client},
    Switch{"-respawn", Kind::flag, "-respawn", server},
    Switch{"-fast", Kind::flag, "-fast"},
    Switch{"-deathmatch", Kind::flag, "-deathmatch", server},
    Switch{"-altdeath", Kind::flag, "-altdeath", server},
    Switch{"-coop", Kind::flag, "", server},
    Switch{"-jump", Kind::flag, "", server | serverOnly},
    Switch{"-width", Kind::number, "-width", client | picture},
    Switch{"-height", Kind::number, "-height", client | picture},
    Switch{"-paltex", Kind::flag, "", picture},
    Switch{"-3dfx", Kind::flag, "", picture},
    Switch{"-sprmaxsurf", Kind::number, "", picture},
};

bool takes(Engine engine, const Switch& word) {
  switch (engine) {
    case Engine::netServer:
      return (word.takers & server) != 0;
    case Engine::netClient:
      return (word.takers & client) != 0;
    default:
      return word.name != "-connect" && (word.takers & serverOnly) == 0 &&
             (engine == Engine::glGame || (word.takers & picture) == 0);
  }
}

bool isSwitch(std::string_view word) { return word.starts_with('-') || word.starts_with('+'); }

std::string inQuotes(std::string_view word) { return '"' + std::string(word) + '"'; }

std::string lower(std::string word) {
  std::ranges::transform(word, word.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return word;
}

/// The names in a game file; a file that is none is refused.
std::vector<std::string> checkedNames(const std::string& gameFile) {
  try {
    return namesIn(gameFile);
  } catch (const std::runtime_error& problem) {
    throw Refusal(problem.what());
  }
}

class Reader {
 public:
  Reader(Engine engine, const Words& words) : engine_(engine), words_(words) {}

  GameCommand read() {
    while (at_ < words_.size()) take(words_[at_++]);
    const bool plays = engine_ == Engine::game || engine_ == Engine::glGame;
    if (engine_ == Engine::netClient && command_.address.empty()) {
      throw Refusal("no server was named: -connect and its address are missing");
    }
    if (plays && command_.iwad.empty()) {
      throw Refusal("no game file was named: -iwad and its location are missing");
    }
    if (command_.players != 0 && !command_.address.empty()) {
      throw Refusal("a game is hosted or joined, not both");
    }
    if (plays && !command_.level.empty()) addLevel();
    return std::move(command_);
  }

 private:
  void add(std::string_view word) {
    if (!word.empty()) command_.chocolate.emplace_back(word);
  }

  std::string valueOf(std::string_view name) {
    if (at_ == words_.size() || isSwitch(words_[at_])) {
      throw Refusal(std::string(name) + " wants a word behind it");
    }
    const std::string& word = words_[at_++];
    if (word.empty() || word.starts_with('@')) {
      throw Refusal(inQuotes(word) +
                    " can't be given to the game: it would read a list of switches");
    }
    return word;
  }

  std::string numberOf(std::string_view name) {
    constexpr std::size_t kMostDigits = 5;
    std::string word = valueOf(name);
    if (word.size() > kMostDigits || word.find_first_not_of("0123456789") != std::string::npos) {
      throw Refusal(std::string(name) + " wants a number, not " + inQuotes(word));
    }
    return word;
  }

  /// A number, or what Kelvaron makes of a typed "E1M3": "M3", a level of the first episode.
  std::string levelOf(std::string_view name) {
    if (at_ < words_.size() && words_[at_].size() == 2 && lower(words_[at_])[0] == 'm') {
      const char digit = words_[at_][1];
      if (digit >= '1' && digit <= '9') return words_[at_++].substr(1);
    }
    return numberOf(name);
  }

  std::string gameFileOf(std::string_view name) {
    std::string word = valueOf(name);
    checkedNames(word);
    return word;
  }

  void take(const std::string& word) {
    const auto known = std::ranges::find(kSwitches, lower(word), &Switch::name);
    if (known == kSwitches.end() || !takes(engine_, *known)) {
      throw Refusal(inQuotes(word) + " is a word that this engine doesn't know");
    }
    std::string& given = command_.given[std::string(known->name)];
    switch (known->kind) {
      case Kind::flag:
        add(known->chocolateName);
        if (known->chocolateName == "-extratics") add("1");
        break;
      case Kind::number:
        given = numberOf(known->name);
        if (known->chocolateName.empty()) break;
        add(known->chocolateName);
        add(given);
        break;
      case Kind::file:
        command_.iwad = gameFileOf(known->name);
        add(known->chocolateName);
        add(command_.iwad);
        break;
      case Kind::files:
        add(known->chocolateName);
        do {
          command_.files.push_back(gameFileOf(known->name));
          add(command_.files.back());
        } while (at_ < words_.size() && !isSwitch(words_[at_]));
        break;
      case Kind::newFile:
        add(known->chocolateName);
        add(valueOf(known->name));
        break;
      case Kind::level:
        command_.level = levelOf(known->name);
        break;
      case Kind::host:
        command_.players = std::stoi(numberOf(known->name));
        if (command_.players < 1) throw Refusal("a game wants at least 1 player");
        break;
      case Kind::join:
        command_.address = valueOf(known->name);
        break;
    }
  }

  void addLevel() {
    add("-warp");
    if (!hasEpisodes(checkedNames(command_.iwad))) return add(command_.level);
    const auto [episode, level] = episodeAndLevel(command_.level);
    add(episode);
    add(level);
  }

  Engine engine_;
  const Words& words_;
  std::size_t at_ = 0;
  GameCommand command_;
};

}  // namespace

GameCommand readWords(Engine engine, const Words& words) { return Reader(engine, words).read(); }

std::pair<std::string, std::string> episodeAndLevel(const std::string& level) {
  const std::string digits = level.size() < 2 ? '0' + level : level.substr(level.size() - 2);
  return {digits[0] == '0' ? "1" : digits.substr(0, 1), digits.substr(1)};
}

}  // namespace kelvaron::engines
