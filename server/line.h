// A line of the chat protocol: fields separated by TAB, ended by CR LF, the keyword first.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kelvaron::server {

using Fields = std::vector<std::string_view>;

/// More fields than any line of the protocol has; what stands behind them is dropped.
inline constexpr std::size_t kFieldLimit = 24;

/// The fields of a line without its line end, at most `kFieldLimit`. They point into `line`.
Fields split(std::string_view line);

/// The line with its line end. Control characters in a field become blanks, so the result is one
/// line with as many fields as were given, whatever they hold.
std::string makeLine(std::initializer_list<std::string_view> fields);
std::string makeLine(const Fields& fields);

/// Colours of the server's lines, red in the low byte, all readable on black.
enum class Colour : std::uint32_t {
  kAction = 0x60B0FF,   // soft orange: someone does something
  kServer = 0x80FFFF,   // yellow: a moderator speaks to all
  kRefusal = 0x7878FF,  // light red: what was asked for is not to be had
  kAnswer = 0xFFD890,   // light blue: what was asked for
  kGrant = 0x80FF80,    // light green: moderator rights
  kTalk = 0xF1F660,     // cyan, as clients write what is said in the room
};

/// What stands before each text of the server's in the room; no user's line can begin so, as no
/// nickname holds a bracket.
inline constexpr std::string_view kServerMark = "[Server] ";

/// A sentence about a user in the chat view, which begins with the nickname. A text that would read
/// as the grant of moderator rights gets a "* " before it: only `grantLine` grants.
std::string actionLine(std::string_view text);
/// A text of the server's in the chat view in its own colour, with its mark.
std::string statusLine(Colour colour, std::string_view text);
/// The message of the day: its lines, clean already, with a line feed between them.
std::string motdLine(std::string_view text);
/// The line on which a client marks its user as a moderator; it compares the text letter for
/// letter.
std::string grantLine();

}  // namespace kelvaron::server
