// What the system's program `ping` prints about one echo.
#pragma once

#include <string>
#include <string_view>

namespace kelvaron {

class PingOutput {
 public:
  /// Takes the next piece; once there are more than 4096 bytes, further ones are passed over.
  void append(std::string_view printed);
  /// More than 4096 bytes came, so that nothing more counts.
  bool tooLong() const;
  /// The heading is there, which is printed right before the echo goes out.
  bool sent() const;
  /// The summary tells of one reply, as most programs say it or as those of small systems do.
  bool replied() const;
  /// The last line that isn't empty, in code page 1252: why the program gave up.
  std::string lastLine() const;

 private:
  std::string printed_;
};

}  // namespace kelvaron
