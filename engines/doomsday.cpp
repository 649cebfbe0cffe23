#include "engines/doomsday.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <system_error>

#include "engines/game_file.h"

namespace kelvaron::engines {
namespace {

namespace fs = std::filesystem;

constexpr const char* kLock = "lock";

fs::path variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

fs::path ownFolders() {
  const fs::path data = variable("XDG_DATA_HOME");
  return (data.is_absolute() ? data : variable("HOME") / ".local/share") / "kelvaron-engines";
}

/// A descriptor that has the folder, or -1.
int lockOf(const fs::path& folder, int flags) {
  const int lock = ::open((folder / kLock).c_str(), flags | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (lock >= 0 && ::flock(lock, LOCK_EX | LOCK_NB) != 0) {
    ::close(lock);
    return -1;
  }
  return lock;
}

/// The folder that this program lies in.
fs::path programFolder() {
  std::error_code unknown;
  return fs::read_symlink("/proc/self/exe", unknown).parent_path();
}

/// What `-iwad` named, else Doom II's file: beside this program, or where Debian's packages put it.
fs::path gameFile(const GameCommand& command) {
  if (!command.iwad.empty()) return command.iwad;
  for (const fs::path& folder :
       {programFolder(), variable("DOOMWADDIR"), fs::path("/usr/share/games/doom")}) {
    for (const char* name : {"DOOM2.WAD", "doom2.wad", "freedoom2.wad"}) {
      if (::access((folder / name).c_str(), R_OK) == 0) return folder / name;
    }
  }
  throw Refusal(
      "there is no game file: link_game_data.sh links one beside this program, and Debian has a "
      "free one in the package freedoom");
}

/// Doomsday knows a game file by its name, so a link gets the one that belongs to what is in it.
Words gameWords(const GameCommand& command, const OwnFolder& own, Edition& edition) {
  const fs::path folder = own.path() / "iwad";
  std::error_code failed;
  fs::path file = fs::canonical(gameFile(command), failed);
  try {
    edition = editionOf(file);
  } catch (const std::runtime_error& problem) {
    throw Refusal(problem.what());
  }
  fs::remove_all(folder, failed);
  fs::create_directories(folder, failed);
  fs::create_symlink(file, folder / edition.fileName, failed);
  if (failed) throw Refusal(folder.string() + " can't be written to: " + failed.message());
  Words words = {"-userdir", own.path(), "-iwad", folder, "-game", edition.game, "-nodiscovery"};
  if (!command.files.empty()) {
    words.emplace_back("-file");
    for (const std::string& each : command.files) words.push_back(fs::absolute(each));
  }
  return words;
}

std::string mapOf(int level) {
  const std::string number = std::to_string(level);
  return "MAP" + std::string(number.size() < 2 ? "0" : "") + number;
}

/// A package that the game loads as it starts: its first start would show a tour of its menus over
/// the picture.
fs::path packageWithoutTour(const OwnFolder& own) {
  fs::path packages = own.path() / "packages";
  const fs::path package = packages / "net.kelvaron.start.pack";
  std::error_code failed;
  fs::create_directories(package, failed);
  std::ofstream(package / "info.dei") << "title: Start\nauthor: Kelvaron\nversion: 1.0\n"
                                         "license: MIT\ntags: hidden core\n";
  std::ofstream script(package / "__init__.ds");
  script << "import Config\nrecord Config.tutorial\nConfig.tutorial.shown = True\n";
  if (!script.flush()) throw Refusal(package.string() + " can't be written to");
  return packages;
}

/// Definitions without the tales that Doom II tells before these levels: the server would keep its
/// players before a black picture for that long, 37 seconds.
fs::path definitionsWithoutTales(const OwnFolder& own) {
  fs::path file = own.path() / "start.ded";
  std::ofstream definitions(file);
  definitions << "Header { Version = 6; }\n";
  for (const int level : {7, 12, 21, 31, 32}) {
    definitions << "Finale { Before = \"" << mapOf(level) << "\"; Script { End } }\n";
  }
  if (!definitions.flush()) throw Refusal(file.string() + " can't be written to");
  return file;
}

}  // namespace

OwnFolder::OwnFolder(const std::string& name, int most) {
  std::error_code failed;
  for (int number = 1; number <= most; ++number) {
    path_ = ownFolders() / (name + '-' + std::to_string(number));
    fs::create_directories(path_, failed);
    lock_ = lockOf(path_, O_RDWR | O_CREAT);
    if (lock_ < 0) continue;
    std::ofstream(path_ / kLock) << ::getpid() << std::endl;
    return;
  }
  throw Refusal(path_.string() + " can't be had: " +
                (failed ? failed.message() : std::string("other programs have all of its kind")));
}

OwnFolder::~OwnFolder() { ::close(lock_); }

int OwnFolder::owner(const std::string& name) {
  const fs::path folder = ownFolders() / (name + "-1");
  const int free = lockOf(folder, O_RDONLY);
  if (free >= 0) ::close(free);
  int process = 0;
  if (free < 0) std::ifstream(folder / kLock) >> process;
  return process;
}

void preloadStart() {
  // By a descriptor that is passed on: a path may have blanks, which end a name in the list.
  const int start = ::open((programFolder() / "doomsday_start.so").c_str(), O_RDONLY);
  if (start < 0) return;
  std::string list = "/proc/self/fd/" + std::to_string(start);
  if (const std::string others = variable("LD_PRELOAD"); !others.empty()) list += ':' + others;
  ::setenv("LD_PRELOAD", list.c_str(), 1);
}

Words doomsdayServerWords(const GameCommand& command, const OwnFolder& folder, bool stays) {
  const auto& given = command.given;
  const auto is = [&](const char* name) { return given.contains(name); };
  const auto on = [&](const char* name) { return is(name) ? "1" : "0"; };
  Edition edition;
  Words words = gameWords(command, folder, edition);
  const std::string level = command.level.empty() ? "1" : command.level;
  std::string episode = "1";
  std::string map = mapOf(std::stoi(level));
  // In a list of maps to play one after the other it counts from 0.
  std::string listed = mapOf(std::stoi(level) - 1).substr(3);
  if (edition.game.starts_with("doom1")) {
    const auto [first, second] = episodeAndLevel(level);
    episode = first;
    map = 'E' + first + 'M' + second;
    listed = std::to_string(std::stoi(first) - 1) + std::to_string(std::stoi(second) - 1);
  }
  const auto skill = given.find("-skill");
  const auto timer = given.find("-timer");
  const bool deathmatch = is("-deathmatch") || (stays && !is("-coop"));
  // The server keeps what it was told, so all of it is told each time.
  const std::array<std::pair<const char*, std::string>, 9> settings = {{
      {"server-game-deathmatch", is("-altdeath") ? "2"
                                 : deathmatch    ? "1"
                                                 : "0"},
      // It counts from 0, and takes its second hardest for granted.
      {"server-game-skill",
       std::to_string(skill == given.end() ? 3 : std::stoi(skill->second) - 1)},
      {"server-game-nomonsters", on("-nomonsters")},
      {"server-game-respawn", on("-respawn")},
      {"server-game-jump", on("-jump")},
      {"server-game-mapcycle",
       timer == given.end() ? "\"\"" : "\"Time:" + timer->second + ' ' + listed + '"'},
      {"server-player-limit", std::to_string(command.players == 0 ? 15 : command.players)},
      {"server-game-episode", episode},
      {"server-game-map", map},
  }};
  std::string commands;
  for (const auto& [name, value] : settings) commands += std::string(name) + ' ' + value + "; ";
  // Only a game that has begun can have a list, so this waits for 35 ticks, a second.
  if (timer != given.end()) commands += "after 35 startcycle; ";
  words.insert(words.end(), {"-stdout", "-port", kDoomsdayPort, "-def",
                             definitionsWithoutTales(folder), "-cmd", commands});
  return words;
}

Words doomsdayGameWords(const GameCommand& command, const OwnFolder& folder,
                        const std::string& address) {
  Edition edition;
  Words words = gameWords(command, folder, edition);
  // Of its modules for sound Debian has this one, and the game crashes as a map begins when it has
  // none: so does -nosfx.
  words.insert(words.end(), {"-isfx", "sdlmixer", "-packs", packageWithoutTour(folder), "-pkg",
                             "net.kelvaron.start"});
  const auto& given = command.given;
  words.insert(words.end(),
               {"-cmd", given.contains("-nosfx") ? "sound-volume 0" : "sound-volume 255"});
  if (given.contains("-nomusic")) words.emplace_back("-nomusic");
  const auto width = given.find("-width");
  const auto height = given.find("-height");
  if (width != given.end() && height != given.end()) {
    words.insert(words.end(), {"-window", "-nomaximize", "-wh", width->second, height->second});
  }
  words.insert(words.end(), {"-connect", address + ':' + kDoomsdayPort});
  return words;
}

}  // namespace kelvaron::engines
