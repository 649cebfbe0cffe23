// Starting a program from one command text.
#pragma once

#include <functional>
#include <string>

#include "base/non_copyable.h"

namespace kelvaron {

/// How the started program's window should come up. Desktops that can't be told leave it to the
/// program.
enum class WindowStyle {
  maximizedFocus = 3,
  minimizedNoFocus = 7,
};

class ProcessPort : NonCopyable {
 public:
  virtual ~ProcessPort() = default;

  /// Starts a program and returns at once. The first word of `command` is its location, in which
  /// blanks are found by trying longer and longer first words against the disk; the rest are its
  /// arguments, cut at blanks. No shell sees the text. The program inherits the working folder, and
  /// outlives this one. Code page 1252. Never faults: what goes wrong is told by `onTrouble`.
  /// `failed`, where there is one, is called in place of that.
  virtual void run(const std::string& command, WindowStyle style,
                   std::function<void()> failed = {}) = 0;

  /// Tells the programs that were started by this command and still run that the user is through
  /// with them. Those that don't care for that go on.
  virtual void leave(const std::string& command) = 0;

  /// A start failed, a program ended with an error within two seconds, or ended later by saying
  /// that it has something to tell: a text for the user that names the program, the reason and the
  /// last lines that it printed. Raised in a turn of the loop.
  std::function<void(const std::string& text)> onTrouble;
};

}  // namespace kelvaron
