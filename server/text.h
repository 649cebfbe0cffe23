// What the server must know of text: one byte per character, code page 1252, as on the wire.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelvaron::server {

/// The mark "¥" that a client puts before a moderator's shown name: byte 165.
inline constexpr std::string_view kModeratorMark = "\xA5";
/// The longest nickname that a client logs in with.
inline constexpr std::size_t kNickLimit = 15;

/// The letters of code page 1252 in upper case: two nicknames are the same when these are equal.
std::string fold(std::string_view text);

/// What nicknames that look alike have in common: the letters in upper case, without the marks (all
/// that is no letter and no digit) at both ends. Of a nickname of marks alone, itself.
std::string likeness(std::string_view nick);

/// From the UTF-8 of the command line. Nothing when a character isn't in the code page.
std::optional<std::string> fromConsole(std::string_view utf8);

/// Whether a text is UTF-8 with characters beyond ASCII, so hardly of the code page.
bool isUtf8(std::string_view text);

/// Control characters (NUL, TAB, CR and LF among them) become blanks, so that no field can turn
/// into two fields or two lines.
std::string cleaned(std::string_view field);
/// As `cleaned`, in place and with the TABs left alone: for a whole line as it arrives.
void cleanLine(std::string& line);

/// Without the blanks around it.
std::string_view trimmed(std::string_view text);

/// 1 to 15 characters without blanks (the no-break blank and the soft hyphen, which nobody sees,
/// count too), without "[", "]" and "¥", and without control characters. The five bytes that the
/// code page leaves open (129, 141, 143, 144 and 157) count as control characters everywhere.
bool isValidNick(std::string_view nick);

/// The nickname in a list entry or a shown name: without blanks around it, without the tag behind
/// it and without the "¥" before it. No valid nickname has a bracket or the mark of its own.
std::string_view bareNick(std::string_view shown);

/// A reason behind a sentence: " (spam)"; nothing for none.
std::string inBrackets(std::string_view reason);

/// What a stranger told, for the log: at most 64 characters, in UTF-8.
std::string forLog(std::string_view told);

/// A sound's name that can't lead out of a client's folder of sounds: 1 to 64 characters, none of
/// them a dot, a separator, a wildcard, a quote or a control character.
bool isSafeSound(std::string_view name);

}  // namespace kelvaron::server
