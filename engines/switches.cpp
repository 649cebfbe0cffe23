#include "engines/switches.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "engines/game_file.h"

namespace kelvaron::engines {
namespace {

enum class Kind { flag, number, file, files, newFile, level, host, join };

struct Switch {
  std::string_view name;
  Kind kind;
  /// What the game calls it; empty for what it does anyway or can't do.
  std::string_view gameName;
  bool glOnly = false;
};

constexpr std::array kSwitches = {
    Switch{"-iwad", Kind::file, "-iwad"},
    Switch{"-file", Kind::files, "-file"},
    Switch{"-record", Kind::newFile, "-record"},
    Switch{"-warp", Kind::level, "-warp"},
    Switch{"-host", Kind::host, ""},
    Switch{"-join", Kind::join, ""},
    Switch{"-connect", Kind::join, ""},
    Switch{"-skill", Kind::number, "-skill"},
    Switch{"-timer", Kind::number, "-timer"},
    Switch{"-turbo", Kind::number, "-turbo"},
    Switch{"-dup", Kind::number, "-dup"},
    Switch{"-extratic", Kind::flag, "-extratics"},
    Switch{"-nomonsters", Kind::flag, "-nomonsters"},
    Switch{"-nomusic", Kind::flag, "-nomusic"},
    Switch{"-nosfx", Kind::flag, "-nosfx"},
    Switch{"-respawn", Kind::flag, "-respawn"},
    Switch{"-fast", Kind::flag, "-fast"},
    Switch{"-deathmatch", Kind::flag, "-deathmatch"},
    Switch{"-altdeath", Kind::flag, "-altdeath"},
    Switch{"-coop", Kind::flag, ""},
    Switch{"-width", Kind::number, "-width", true},
    Switch{"-height", Kind::number, "-height", true},
    Switch{"-paltex", Kind::flag, "", true},
    Switch{"-3dfx", Kind::flag, "", true},
    Switch{"-sprmaxsurf", Kind::number, "", true},
};

bool isSwitch(std::string_view word) { return word.starts_with('-') || word.starts_with('+'); }

std::string quoted(std::string_view word) { return '"' + std::string(word) + '"'; }

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
  Reader(Engine engine, const std::vector<std::string>& words) : engine_(engine), words_(words) {}

  GameCommand read() {
    while (at_ < words_.size()) take(words_[at_++]);
    if (engine_ == Engine::netClient && command_.address.empty()) {
      throw Refusal("no server was named: -connect and its address are missing");
    }
    if (engine_ != Engine::netClient && iwad_.empty()) {
      throw Refusal("no game file was named: -iwad and its location are missing");
    }
    if (players_ != 0 && !command_.address.empty()) {
      throw Refusal("a game is hosted or joined, not both");
    }
    if (!level_.empty()) addLevel();
    if (players_ != 0) {
      for (const char* word : {"-privateserver", "-server", "-nodes"}) add(word);
      add(std::to_string(players_));
    }
    return std::move(command_);
  }

 private:
  void add(std::string_view word) {
    if (!word.empty()) command_.arguments.emplace_back(word);
  }

  std::string valueOf(std::string_view name) {
    if (at_ == words_.size() || isSwitch(words_[at_])) {
      throw Refusal(std::string(name) + " wants a word behind it");
    }
    const std::string& word = words_[at_++];
    if (word.empty() || word.starts_with('@')) {
      throw Refusal(quoted(word) + " can't be given to the game: it would read a list of switches");
    }
    return word;
  }

  std::string numberOf(std::string_view name) {
    constexpr std::size_t kMostDigits = 5;
    std::string word = valueOf(name);
    if (word.size() > kMostDigits || word.find_first_not_of("0123456789") != std::string::npos) {
      throw Refusal(std::string(name) + " wants a number, not " + quoted(word));
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
    const bool join = known != kSwitches.end() && known->kind == Kind::join;
    const std::string_view joinName = engine_ == Engine::netClient ? "-connect" : "-join";
    if (known == kSwitches.end() || (known->glOnly && engine_ != Engine::glGame) ||
        (join && known->name != joinName)) {
      throw Refusal(quoted(word) + " is a word that this engine doesn't know");
    }
    switch (known->kind) {
      case Kind::flag:
        add(known->gameName);
        if (known->gameName == "-extratics") add("1");
        break;
      case Kind::number: {
        const std::string number = numberOf(known->name);
        if (known->gameName.empty()) break;
        add(known->gameName);
        add(number);
        break;
      }
      case Kind::file:
        iwad_ = gameFileOf(known->name);
        add(known->gameName);
        add(iwad_);
        break;
      case Kind::files:
        add(known->gameName);
        do add(gameFileOf(known->name));
        while (at_ < words_.size() && !isSwitch(words_[at_]));
        break;
      case Kind::newFile:
        add(known->gameName);
        add(valueOf(known->name));
        break;
      case Kind::level:
        level_ = levelOf(known->name);
        break;
      case Kind::host:
        players_ = std::stoi(numberOf(known->name));
        if (players_ < 1 || players_ > kMostPlayers) {
          throw Refusal("this engine takes 1 to " + std::to_string(kMostPlayers) +
                        " players, not " + std::to_string(players_));
        }
        break;
      case Kind::join:
        command_.address = valueOf(known->name);
        break;
    }
  }

  void addLevel() {
    add("-warp");
    const auto names = iwad_.empty() ? std::vector<std::string>() : checkedNames(iwad_);
    if (std::ranges::find(names, "E1M1") == names.end()) return add(level_);
    // A game of episodes: "23" is level 3 of episode 2, and one digit is a level of the first.
    const std::string digits = level_.size() < 2 ? '0' + level_ : level_;
    const std::string_view last = std::string_view(digits).substr(digits.size() - 2);
    add(last[0] == '0' ? "1" : last.substr(0, 1));
    add(last.substr(1));
  }

  Engine engine_;
  const std::vector<std::string>& words_;
  std::size_t at_ = 0;
  GameCommand command_;
  std::string iwad_;
  std::string level_;
  int players_ = 0;
};

}  // namespace

GameCommand inGameWords(Engine engine, const std::vector<std::string>& words) {
  return Reader(engine, words).read();
}

}  // namespace kelvaron::engines
