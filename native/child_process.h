// One program that this one has started.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/non_copyable.h"
#include "platform/process.h"

namespace kelvaron {

class ChildProcess : NonCopyable {
 public:
  /// How it ended.
  struct Ending {
    /// Its exit code; none where something else ended it or its end is not known.
    std::optional<int> code;
    /// As the end of a sentence that begins with its name, "ended with the error 3"; empty where it
    /// ended well.
    std::string problem;
  };
  /// A program, or why there is none, as the end of a sentence that begins with its location.
  struct Started;

  virtual ~ChildProcess() = default;

  /// Starts a program without a shell, with nothing of this process's but `output`, an open
  /// descriptor above the standard three, for what it prints. It goes on when this object is gone.
  /// `arguments`, behind the program's own name, and `path` are in UTF-8.
  static Started start(const std::string& path, const std::vector<std::string>& arguments,
                       int output, WindowStyle style);

  /// Nothing while it runs. To be asked no more once it has answered.
  virtual std::optional<Ending> ended() = 0;
  /// Tells a program that its user is through with it, where the system has a way that every
  /// program passes over unless it has asked for it.
  virtual void leave() = 0;
};

struct ChildProcess::Started {
  std::unique_ptr<ChildProcess> child;
  std::string problem;
};

}  // namespace kelvaron
