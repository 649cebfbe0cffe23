// Freely available engines under the names and with the switches of those that Kelvaron starts.
//
// One program under four names: zdoom.exe and zdoomgl.exe (the game, for a host, a guest or one
// player), doomsv.exe (a server that stays) and doomcl.exe (the game, for a player of such a
// server). It starts what the command needs, waits for it, and says in a sentence what went wrong,
// with the engine's last lines behind it. Exit codes: 2 for a command that can't be carried out, 69
// for a game that could not go on.
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "engines/doomsday.h"
#include "engines/meeting.h"
#include "engines/programs.h"
#include "engines/switches.h"

namespace kelvaron::engines {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kRefused = 2;
constexpr int kFailed = 69;

/// Most players of the Chocolate family's games, and of all.
constexpr int kChocolatePlayers = 4;
constexpr int kMostPlayers = 15;

/// How long a guest waits for a host who may press GO later, and a host for the own server.
constexpr auto kForHost = 60s;
constexpr auto kForServer = 30s;

constexpr auto kForever = std::chrono::hours(24 * 365);

/// Where a program of this name is; empty where there is none. Debian's games are in a folder that
/// not every path has. KELVARON_GAMES names other folders in place of all that.
std::string find(const std::string& program) {
  const char* path = std::getenv("PATH");
  const char* games = std::getenv("KELVARON_GAMES");
  std::istringstream folders(games != nullptr ? games
                                              : std::string(path == nullptr ? "" : path) +
                                                    ":/usr/games:/usr/local/games");
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::string location = (folder.empty() ? "." : folder) + '/' + program;
    if (::access(location.c_str(), X_OK) == 0) return location;
  }
  return {};
}

/// Refuses when it isn't there, and says for what it is needed.
std::string located(const std::string& program, const std::string& need) {
  std::string location = find(program);
  if (location.empty()) {
    throw Refusal(need + ", and " + program + " isn't installed; Debian has it in the package " +
                  program);
  }
  return location;
}

/// What is carried out now can no longer be refused, only fail.
struct Failure : Refusal {
  using Refusal::Refusal;
};

bool runFor(Programs& programs, std::chrono::milliseconds time) {
  try {
    return programs.run(time);
  } catch (const Refusal& problem) {
    throw Failure(problem.what());
  }
}

void runGame(Programs& programs) {
  while (runFor(programs, kForever)) {
  }
}

/// Whichever of the two there is, the first before the second; empty where neither is.
std::string chocolate() {
  const std::string first = find("chocolate-doom");
  return first.empty() ? find("crispy-doom") : first;
}

std::string nameOf(const std::string& program) {
  return program.ends_with("crispy-doom") ? "Crispy Doom" : "Chocolate Doom";
}

/// A guest's game ends when its host's has, which engines notice late or don't say.
template <class Answers>
void runWhile(Programs& programs, Answers answers) {
  constexpr int kMostUnanswered = 4;
  for (int unanswered = 0; runFor(programs, 2s);) {
    unanswered = answers() ? 0 : unanswered + 1;
    if (unanswered == kMostUnanswered) throw Failure("the host has ended the game");
  }
}

void playChocolate(const std::string& program, Words words, const std::string& host) {
  words.insert(words.begin(), program);
  Programs programs;
  programs.start(Role::game, nameOf(program), std::move(words));
  if (host.empty()) return runGame(programs);
  runWhile(programs, [&] { return chocolateAt(host).has_value(); });
}

void startDoomsday(Programs& programs, const GameCommand& command, const std::string& address,
                   const std::string& need) {
  const OwnFolder folder("game");
  Words words = doomsdayGameWords(command, folder, address);
  words.insert(words.begin(), located("doomsday", need));
  preloadStart();
  programs.start(Role::game, "Doomsday", std::move(words));
  runWhile(programs, [&] { return doomsdayListens(address); });
}

/// A game for others, which ends with the host's own.
void hostDoomsday(const GameCommand& command, const std::string& need) {
  located("doomsday", need);
  Words words = {located("doomsday-server", need)};
  if (portTaken(SOCK_STREAM, kDoomsdayPort)) {
    throw Refusal("another game is hosted on this machine: port " + std::string(kDoomsdayPort) +
                  " is taken");
  }
  const OwnFolder folder("server");
  const Words more = doomsdayServerWords(command, folder, false);
  words.insert(words.end(), more.begin(), more.end());
  Programs programs;
  programs.start(Role::server, "Doomsday's server", std::move(words));
  const auto end = Clock::now() + kForServer;
  while (!doomsdayListens("127.0.0.1")) {
    if (!programs.run(100ms)) return;
    if (Clock::now() > end) throw Failure("Doomsday's server doesn't begin to listen");
  }
  startDoomsday(programs, command, "127.0.0.1", need);
}

void host(const GameCommand& command) {
  if (command.players > kMostPlayers) {
    throw Refusal("a game takes 1 to " + std::to_string(kMostPlayers) + " players, not " +
                  std::to_string(command.players));
  }
  const std::string program = chocolate();
  if (command.players > kChocolatePlayers || program.empty()) {
    return hostDoomsday(command, command.players > kChocolatePlayers
                                     ? "more than 4 players need Doomsday and its server"
                                     : "neither chocolate-doom nor crispy-doom is installed");
  }
  Words words = command.chocolate;
  if (command.players != 0) {
    if (portTaken(SOCK_DGRAM, kChocolatePort)) {
      throw Refusal("another game is hosted on this machine: port " + std::string(kChocolatePort) +
                    " is taken");
    }
    words.insert(words.end(),
                 {"-privateserver", "-server", "-nodes", std::to_string(command.players)});
  }
  playChocolate(program, std::move(words), "");
}

/// The host may start later than the guest.
Host waitForHost(const std::string& address, bool stays) {
  const auto end = Clock::now() + kForHost;
  while (true) {
    if (!stays) {
      if (const auto host = hostAt(address)) return *host;
    } else if (doomsdayListens(address)) {
      return {};
    }
    if (Clock::now() > end) {
      throw Failure("no game is hosted at " + address + ": nobody has answered for a minute");
    }
    std::cout << address << " doesn't answer yet; trying again" << std::endl;
    ::usleep(500'000);
  }
}

void join(const GameCommand& command, bool stays) {
  const Host host = waitForHost(command.address, stays);
  if (host.version.empty()) {
    Programs programs;
    return startDoomsday(programs, command, command.address, "the host plays on Doomsday");
  }
  if (host.begun) throw Failure("the game at " + command.address + " has begun without this guest");
  const bool crispy = host.version.starts_with("Crispy");
  const std::string program =
      located(crispy ? "crispy-doom" : "chocolate-doom", "the host plays with " + host.version);
  Words words = command.chocolate;
  words.insert(words.end(), {"-connect", command.address});
  playChocolate(program, std::move(words), command.address);
}

/// A server that an earlier Kelvaron of this user started: this one answers for it now.
void takeOver(pid_t owner) {
  std::cout << "A server of an earlier start runs on" << std::endl;
  const Programs none;
  while (OwnFolder::owner("server") == owner) {
    if (none.told(500ms)) ::kill(owner, SIGTERM);
  }
}

void serve(const GameCommand& command) {
  Words words = {located("doomsday-server", "a server that players join and leave needs Doomsday")};
  if (portTaken(SOCK_STREAM, kDoomsdayPort)) {
    if (const pid_t owner = OwnFolder::owner("server")) return takeOver(owner);
    throw Refusal("another server runs on this machine: port " + std::string(kDoomsdayPort) +
                  " is taken");
  }
  const OwnFolder folder("server");
  const Words more = doomsdayServerWords(command, folder, true);
  words.insert(words.end(), more.begin(), more.end());
  Programs programs;
  programs.start(Role::server, "Doomsday's server", std::move(words));
  runGame(programs);
}

void run(const std::string& name, const Words& words) {
  const auto play = [&](Engine engine) {
    const GameCommand command = readWords(engine, words);
    if (!command.address.empty()) return join(command, engine == Engine::netClient);
    return engine == Engine::netServer ? serve(command) : host(command);
  };
  if (name == "zdoom.exe") return play(Engine::game);
  if (name == "zdoomgl.exe") return play(Engine::glGame);
  if (name == "doomcl.exe") return play(Engine::netClient);
  if (name == "doomsv.exe") return play(Engine::netServer);
  throw Refusal("it has to be called zdoom.exe, zdoomgl.exe, doomsv.exe or doomcl.exe");
}

}  // namespace
}  // namespace kelvaron::engines

int main(int count, char** values) {
  using namespace kelvaron::engines;
  std::string name = count > 0 ? std::filesystem::path(values[0]).filename().string() : "";
  std::ranges::transform(name, name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  try {
    run(name, {values + std::min(count, 1), values + count});
    return EXIT_SUCCESS;
  } catch (const std::exception& problem) {
    std::cerr << name << ": " << problem.what() << std::endl;
    return dynamic_cast<const Failure*>(&problem) == nullptr ? kRefused : kFailed;
  }
}
