// Chocolate Doom or Crispy Doom under the names and with the switches of the engines that Kelvaron
// starts.
//
// One program under four names: zdoom.exe and zdoomgl.exe (the game, for a host, a guest or one
// player), doomsv.exe (a server that stays) and doomcl.exe (the game, for a player of such a
// server). It becomes the game; a guest first waits until the host answers. Refusals go to the
// error output, with exit code 2.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "engines/switches.h"

namespace kelvaron::engines {
namespace {

using Words = std::vector<std::string>;

constexpr int kRefused = 2;

/// Where a program of this name is; empty where there is none. Debian's games are in a folder that
/// not every path has.
std::string find(const std::string& program) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(std::string(path == nullptr ? "" : path) +
                             ":/usr/games:/usr/local/games");
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::string location = (folder.empty() ? "." : folder) + '/' + program;
    if (::access(location.c_str(), X_OK) == 0) return location;
  }
  return {};
}

/// Where the first of both games' programs is that is there: "doom" or "server".
std::string located(const std::string& part) {
  for (const char* game : {"chocolate-", "crispy-"}) {
    if (std::string location = find(game + part); !location.empty()) return location;
  }
  throw Refusal("neither chocolate-" + part + " nor crispy-" + part +
                " is installed; Debian has them in the packages chocolate-doom and crispy-doom");
}

std::vector<char*> asList(Words& words) {
  std::vector<char*> list;
  list.reserve(words.size() + 1);
  for (std::string& word : words) list.push_back(word.data());
  list.push_back(nullptr);
  return list;
}

[[noreturn]] void become(const std::string& part, Words words) {
  const std::string location = located(part);
  words.insert(words.begin(), location);
  ::execv(location.c_str(), asList(words).data());
  throw Refusal(location + " could not be started: " + std::generic_category().message(errno));
}

/// Whether a host or a server answers there. Takes some seconds where none does.
bool answers(const std::string& address) {
  Words words = {located("doom"), "-nogui", "-query", address};
  posix_spawn_file_actions_t silence{};
  ::posix_spawn_file_actions_init(&silence);
  ::posix_spawn_file_actions_addopen(&silence, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  ::posix_spawn_file_actions_addopen(&silence, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t query = 0;
  const int error =
      ::posix_spawn(&query, words[0].c_str(), &silence, nullptr, asList(words).data(), environ);
  ::posix_spawn_file_actions_destroy(&silence);
  if (error != 0) {
    throw Refusal(words[0] + " could not be started: " + std::generic_category().message(error));
  }
  int status = 0;
  while (::waitpid(query, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0;
}

/// The game itself gives up on a host after a few seconds, but the host may start later than that.
void waitForHost(const std::string& address) {
  using std::chrono::steady_clock;
  constexpr std::chrono::seconds kPatience(60);
  constexpr std::chrono::milliseconds kBetweenQueries(500);
  const auto end = steady_clock::now() + kPatience;
  // In the end the game says in a window of its own that nobody answers.
  while (!answers(address) && steady_clock::now() < end) {
    std::cerr << address << " doesn't answer yet; trying again" << std::endl;
    std::this_thread::sleep_for(kBetweenQueries);
  }
}

[[noreturn]] void play(Engine engine, const Words& words) {
  GameCommand command = inGameWords(engine, words);
  if (!command.address.empty()) {
    waitForHost(command.address);
    command.arguments.insert(command.arguments.end(), {"-connect", command.address});
  }
  become("doom", std::move(command.arguments));
}

[[noreturn]] void run(const std::string& name, const Words& words) {
  if (name == "zdoom.exe") play(Engine::game, words);
  if (name == "zdoomgl.exe") play(Engine::glGame, words);
  if (name == "doomcl.exe") play(Engine::netClient, words);
  if (name != "doomsv.exe") {
    throw Refusal("it has to be called zdoom.exe, zdoomgl.exe, doomsv.exe or doomcl.exe");
  }
  if (!words.empty()) throw Refusal("the server takes no words, but got \"" + words[0] + '"');
  become("server", {"-privateserver", "-nogui"});
}

}  // namespace
}  // namespace kelvaron::engines

int main(int count, char** values) {
  std::string name = count > 0 ? std::filesystem::path(values[0]).filename().string() : "";
  std::ranges::transform(name, name.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  try {
    kelvaron::engines::run(name, {values + std::min(count, 1), values + count});
  } catch (const std::exception& problem) {
    std::cerr << name << ": " << problem.what() << std::endl;
    return kelvaron::engines::kRefused;
  }
}
