// The programs that make up a game: started, listened to and ended together.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <deque>
#include <list>
#include <string>

#include "engines/switches.h"

namespace kelvaron::engines {

enum class Role { server, game };

/// Ends them when it ends. What they print goes to this program's output.
class Programs {
 public:
  /// From here on, TERM, INT, HUP and URG tell this program to end its game. URG is what a client
  /// sends that is through with what it started, since others pass it over.
  Programs();
  Programs(const Programs&) = delete;
  Programs& operator=(const Programs&) = delete;
  ~Programs();

  /// `name` is how sentences call it. Throws Refusal.
  void start(Role role, const std::string& name, Words words);

  /// Runs them for that long at most, or until the first has ended or this program was told to end
  /// its game. True while they run. Throws Refusal when one ended in another way than by its user,
  /// or when a game has lost its host.
  bool run(std::chrono::milliseconds time);

  /// Whether this program was told to end its game within that time.
  bool told(std::chrono::milliseconds time) const;

 private:
  struct Program;

  void listen(Program& program);
  void hear(Program& program, const std::string& line);
  void takeLeave(Program& program, int status);
  void endAll();
  [[noreturn]] static void fail(const Program& program, const std::string& sentence);

  std::list<Program> running_;
  int signals_ = -1;
};

}  // namespace kelvaron::engines
