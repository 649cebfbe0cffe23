// The limits and time-outs of a server, as the file `settings` gives them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kelvaron::server {

/// Times are in milliseconds, sizes in bytes. What each is for stands once, in settings.cpp, from
/// where it also reaches the file as a comment.
struct Settings {
  long loginTimeoutMs = 15'000;
  long leaveGraceMs = 3'000;
  long stallTimeoutMs = 30'000;
  long addressAnswerMs = 5'000;
  long listDelayMs = 50;
  long acceptPauseMs = 200;
  long lineLimit = 65'536;
  long queueLimit = 4'194'304;
  long memoryLimit = 67'108'864;
  long burstLines = 60;
  long linesPerSecond = 30;
  long burstLogins = 32;
  long loginsPerMinute = 60;
  long localTimes = 100;
  long listBytesPerSecond = 65'536;
  long connections = 4'096;
  long connectionsPerAddress = 32;
  long proofsPerConnection = 3;
  long proofsPerAddress = 10;
  long proofsPerAccount = 20;
  long moderatorProofMs = 120'000;
};

/// From lines "key = value"; blank lines and lines that begin with "#" are comments, and a key that
/// is not given keeps its default. Throws `StoreError` with the line's number for a line that is
/// none of these, an unknown key or a value that is no number or out of range.
Settings parseSettings(std::string_view text);

/// Reads one line of those into `settings`; `number` is the line's.
void parseSetting(std::string_view line, std::size_t number, Settings& settings);

/// The file as the server writes it when there is none: each key with its default and a comment.
std::string defaultSettingsText();

}  // namespace kelvaron::server
